// SPDX-License-Identifier: MIT
#include "temporary_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

TemporaryFolder::TemporaryFolder()
{
    std::string form = (std::filesystem::temp_directory_path() / "linux_gateway_XXXXXX").string();
    folder_ = mkdtemp(form.data());
}

TemporaryFolder::~TemporaryFolder()
{
    std::filesystem::remove_all(folder_);
}

std::string TemporaryFolder::path(const std::string &name) const
{
    return folder_ + '/' + name;
}

std::string TemporaryFolder::write(const std::string &name, const std::string &text) const
{
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
}

std::string TemporaryFolder::read(const std::string &name) const
{
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
