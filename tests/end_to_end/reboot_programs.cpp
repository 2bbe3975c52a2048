// SPDX-License-Identifier: MIT
#include "reboot_programs.h"

#include "agent_process.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

constexpr const char *kPrograms[] = {"sync", "reboot"};

} // namespace

RebootPrograms::RebootPrograms() : folder_(test_file("programs")), path_(getenv("PATH"))
{
    fs::create_directory(folder_);
    for (const char *program : kPrograms) {
        const std::string file = folder_ + "/" + program;
        std::ofstream(file) << "#!/bin/sh\n: >" << file << ".was_run\n";
        fs::permissions(file, fs::perms::owner_all);
    }
    setenv("PATH", folder_.c_str(), 1);
}

RebootPrograms::~RebootPrograms()
{
    setenv("PATH", path_.c_str(), 1);
    fs::remove_all(folder_);
}

bool RebootPrograms::are_found() const
{
    for (const std::string program : kPrograms) {
        const std::string ask =
            "test \"$(command -v " + program + ")\" = '" + folder_ + "/" + program + "'";
        if (std::system(ask.c_str()) != 0) {
            return false;
        }
    }
    return true;
}

bool RebootPrograms::were_run() const
{
    for (const std::string program : kPrograms) {
        if (fs::exists(folder_ + "/" + program + ".was_run")) {
            return true;
        }
    }
    return false;
}
