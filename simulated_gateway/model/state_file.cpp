// SPDX-License-Identifier: MIT
#include "model/state_file.h"

#include "io/sha256.h"
#include "model/document.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <utility>

namespace simulated_gateway {
namespace {

std::string real_path(const std::string &path)
{
    std::error_code failure;
    std::filesystem::path real = std::filesystem::absolute(path, failure);
    if (!failure) {
        real = std::filesystem::weakly_canonical(real, failure);
    }
    if (failure) {
        throw Error(path + ": " + failure.message());
    }
    return real.string();
}

constexpr char kInUse[] = ": is in use by another gateway";
constexpr char kChecksum[] = "checksum";

// Of the whole content but the white space: a program that rewrites the file need not preserve
// that.
std::string checksum_of(const Json &document)
{
    Sha256 digest;
    digest.add(document.dump());
    return hexadecimal(digest.finish());
}

// Removes the checksum. A file of version 0.1.0 has none.
void take_checksum(Json &document)
{
    const auto checksum = document.find(kChecksum);
    if (checksum == document.end()) {
        return;
    }
    const Json given = *checksum;
    document.erase(checksum);
    if (given != checksum_of(document)) {
        throw Error(std::string("/") + kChecksum + ": does not match the content of the file");
    }
}

State read_state(const std::string &name, std::string_view text)
try {
    Json document = parse_json(text);
    take_head(document, kStateFormat);
    take_checksum(document);
    return read_checked<State>(document);
} catch (const Error &error) {
    throw Error(name + ": " + error.what());
}

std::string write_state(const State &state)
{
    Json content = write_struct(state);
    Json document = make_head(kStateFormat);
    document[kChecksum] = checksum_of(content);
    document.update(content);
    return document.dump(4) + "\n";
}

} // namespace

StateFile::StateFile(const std::string &path) : name_(path), path_(real_path(path))
{
    // The lock needs a separate file, because every change replaces the state file. It is not
    // deleted: otherwise two processes could lock two files of the same name.
    const std::string lock_path = path_ + ".lock";
    lock_ = FileDescriptor(open(lock_path.c_str(),
                                O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                                S_IRUSR | S_IWUSR));
    if (!lock_.is_open()) {
        refuse_file(lock_path);
    }
    if (flock(lock_.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) {
            throw Error(name_ + kInUse);
        }
        refuse_file(lock_path);
    }
}

std::optional<State> StateFile::load()
{
    // A dangling link exists, so it is not a missing file: saving would replace it with a file.
    std::error_code failure;
    if (symlink_status(std::filesystem::path(path_), failure).type() ==
        std::filesystem::file_type::not_found) {
        return std::nullopt;
    }
    file_ = locked(FileDescriptor(open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)));
    try {
        return read_state(name_, read_file(path_));
    } catch (const Error &damage) {
        if (copy_holds()) {
            throw Error(std::string(damage.what()) + "; the last good copy is " + copy_path());
        }
        throw;
    }
}

bool StateFile::copy_holds() const
try {
    read_state(copy_path(), read_file(copy_path()));
    return true;
} catch (const Error &) {
    return false;
}

void StateFile::save(const State &state)
{
    const std::string text = write_state(state);
    NewFile copy(copy_path());
    NewFile file(path_);
    file.write(text);
    copy.write(text);
    FileDescriptor locked_file = locked(file.duplicate());
    // Both are on the disk before either is renamed: hardly anything can fail between the two.
    file.sync();
    copy.replace();
    file.replace();
    file_ = std::move(locked_file);
}

// Not every file system can lock a file that is open read-only. There, the lock file is locked
// anyway.
FileDescriptor StateFile::locked(FileDescriptor file) const
{
    if (file.is_open() && flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        throw Error(name_ + kInUse);
    }
    return file;
}

} // namespace simulated_gateway
