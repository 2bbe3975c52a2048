// SPDX-License-Identifier: MIT
#include "service/ways_in/http/static_files.h"

#include "service/common/gzip.h"
#include "service/ways_in/http/login_sessions.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace agent::service {

namespace {

namespace fs = std::filesystem;

constexpr size_t kMostFiles = 200;
constexpr size_t kMostConsoleBytes = 32UL * 1024 * 1024;
constexpr char kIndex[] = "index.html";
constexpr char kGzipEnding[] = ".gz";
constexpr char kForever[] = "public, max-age=31536000, immutable";
constexpr size_t kTagSize = 32;
constexpr size_t kShortestHash = 8;

constexpr std::pair<const char *, const char *> kTypes[] = {
    {".css", "text/css; charset=utf-8"},
    {".html", "text/html; charset=utf-8"},
    {".ico", "image/x-icon"},
    {".js", "text/javascript; charset=utf-8"},
    {".json", "application/json"},
    {".map", "application/json"},
    {".png", "image/png"},
    {".svg", "image/svg+xml"},
    {".txt", "text/plain; charset=utf-8"},
    {".webmanifest", "application/manifest+json"},
    {".woff2", "font/woff2"},
};

constexpr char kNoConsole[] =
    "<!DOCTYPE html>\n<html lang=\"en\"><meta charset=\"utf-8\"><title>hgagent</title>\n"
    "<h1>hgagent</h1>\n<p>This build has no console: it was made without Node.js. Programs can use "
    "<code>/api/</code>.</p></html>\n";

std::string text_of(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return text;
}

// Whether the name has a hash, as in app-1A2B3C4D.js: then its contents never change.
bool has_hash(const fs::path &file)
{
    const std::string name = file.stem().string();
    const size_t dash = name.rfind('-');
    return dash != std::string::npos && name.size() - dash - 1 >= kShortestHash &&
           name.find_first_not_of("0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ",
                                  dash + 1) == std::string::npos;
}

} // namespace

StaticFile StaticFile::make(std::string type, std::string text)
{
    StaticFile file;
    file.type = std::move(type);
    file.tag = "\"" + digest_of(text).substr(0, kTagSize) + "\"";
    std::string packed = service::gzip(text);
    if (packed.size() < text.size()) {
        file.gzip = std::make_shared<const std::string>(std::move(packed));
    }
    file.plain = std::make_shared<const std::string>(std::move(text));
    return file;
}

HttpResponse StaticFile::response(const HttpRequest &request) const
{
    const bool is_packed = gzip != nullptr && request.has_word("accept-encoding", "gzip");
    // The variants differ, so their tags have to differ as well.
    std::string own_tag = tag;
    if (is_packed) {
        own_tag.insert(own_tag.size() - 1, "-gzip");
    }
    HttpResponse response;
    response.add("ETag", own_tag).add("Cache-Control", caching).add("Vary", "Accept-Encoding");
    const std::string *known = request.find("if-none-match");
    if (known != nullptr && known->find(own_tag) != std::string::npos) {
        response.status = status::kNotModified;
        return response;
    }
    response.add("Content-Type", type);
    if (is_packed) {
        response.add("Content-Encoding", "gzip");
    }
    response.body = is_packed ? gzip : plain;
    return response;
}

void StaticFiles::load(const std::string &folder)
{
    std::map<std::string, StaticFile, std::less<>> files;
    size_t bytes = 0;
    has_console_ = !folder.empty() && fs::is_regular_file(fs::path(folder) / kIndex);
    if (!has_console_) {
        files.emplace("/", StaticFile::make("text/html; charset=utf-8", kNoConsole));
        files_ = std::move(files);
        return;
    }
    for (const auto &entry : fs::recursive_directory_iterator(folder)) {
        const fs::path &path = entry.path();
        const auto *type = std::ranges::find(kTypes, path.extension(),
                                             &std::pair<const char *, const char *>::first);
        if (!entry.is_regular_file() || type == std::end(kTypes)) {
            continue;
        }
        bytes += entry.file_size();
        if (files.size() >= kMostFiles || bytes > kMostConsoleBytes) {
            throw std::runtime_error("the console's folder " + folder + " has too many files");
        }
        StaticFile file = StaticFile::make(type->second, text_of(path));
        const fs::path packed = path.string() + kGzipEnding;
        if (fs::is_regular_file(packed)) {
            file.gzip = std::make_shared<const std::string>(text_of(packed));
        }
        if (has_hash(path)) {
            file.caching = kForever;
        }
        const std::string name = "/" + path.lexically_relative(folder).string();
        files.emplace(name == std::string("/") + kIndex ? "/" : name, std::move(file));
    }
    files_ = std::move(files);
}

const StaticFile *StaticFiles::find(std::string_view path) const
{
    const auto found = files_.find(path);
    return found != files_.end() ? &found->second : nullptr;
}

std::string default_console_folder()
{
    std::error_code problem;
    const fs::path programs = fs::read_symlink("/proc/self/exe", problem).parent_path();
    for (const char *place : {HGAGENT_CONSOLE, "../console"}) {
        const fs::path folder = (programs / place).lexically_normal();
        if (fs::is_regular_file(folder / kIndex, problem)) {
            return folder;
        }
    }
    return "";
}

} // namespace agent::service
