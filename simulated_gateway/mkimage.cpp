// hg-mkimage: makes firmware images for the simulated gateway, and shows what is in one.
#include "files.h"
#include "firmware_image.h"
#include "text.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <ctime>
#include <random>

namespace {

using namespace simulated_gateway;

enum ExitStatus {
    kSuccess = 0,
    kFailed = 1, // a file cannot be read or written, or the image does not hold
    kWrongUsage = 2,
};

constexpr char kFooter[] = R"(
Exit status:
  0  done
  1  a file cannot be read or written, or the image does not hold
  2  wrong usage

Examples:
  hg-mkimage --product HGU-AX3000 --version V3.2.0 new.image
  hg-mkimage --product HGU-AX3000 --version V3.2.0 --payload rootfs.bin new.image
  hg-mkimage --show new.image
)";

struct Options {
    ImageHeader header;
    std::string payload; // a file, else so many bytes
    uint64_t size = 1U << 20;
    std::string image;
    bool show = false;
};

std::string today()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts = {};
    char text[32];
    gmtime_r(&now, &parts);
    return {text, std::strftime(text, sizeof(text), "%Y-%m-%d", &parts)};
}

// Bytes that are the same for the same version at every run, and that cannot be compressed.
void invent_payload(const Options &options, const std::function<void(std::string_view)> &take)
{
    std::seed_seq seed(options.header.version.begin(), options.header.version.end());
    std::mt19937 numbers(seed);
    std::string block;
    for (uint64_t left = options.size; left > 0; left -= block.size()) {
        block.resize(std::min<uint64_t>(left, 65536));
        for (char &byte : block) {
            byte = static_cast<char>(numbers());
        }
        take(block);
    }
}

void make(Options options)
{
    ImageHeader &header = options.header;
    const auto with_payload = [&](const std::function<void(std::string_view)> &take) {
        if (options.payload.empty()) {
            invent_payload(options, take);
        } else {
            read_file(options.payload, take);
        }
    };
    // The header goes first and tells of what follows it, so the payload is read twice.
    with_payload([&](std::string_view bytes) { header.payload_size += bytes.size(); });
    if (header.payload_size == 0) {
        throw Error(options.payload + ": is empty");
    }
    Sha256 digest;
    digest.add(header.encode());
    with_payload([&](std::string_view bytes) { digest.add(bytes); });
    header.sha256 = digest.finish();

    NewFile image(options.image);
    ImageCheck check(header.product, UINT64_MAX);
    const auto write = [&](std::string_view bytes) {
        check.add(bytes);
        image.write(bytes);
    };
    write(header.encode());
    with_payload(write);
    check.finish();
    image.replace();
}

void show(const std::string &file)
{
    ImageCheck check(std::nullopt, UINT64_MAX);
    ImageHeader header;
    try {
        read_file(file, [&](std::string_view bytes) { check.add(bytes); });
        header = check.finish();
    } catch (const Error &failure) {
        const std::string reason = failure.what();
        throw Error(reason.starts_with(file) ? reason : file + ": " + reason);
    }
    std::printf("product: %s\nversion: %s\ndate: %s\npayload: %ju bytes\nSHA-256: %s\n",
                header.product.c_str(), header.version.c_str(), header.date.c_str(),
                static_cast<uintmax_t>(header.payload_size), hexadecimal(header.sha256).c_str());
}

// Throws CLI's own complaints, and a wish for help as well.
Options parse(CLI::App &app, int count, char **words)
{
    Options options;
    options.header.date = today();
    app.footer(kFooter);
    CLI::Option *product = app.add_option("--product", options.header.product,
                                          "Kind of device that the image is for: its device_type");
    CLI::Option *version =
        app.add_option("--version", options.header.version, "Version of the firmware");
    CLI::Option *date = app.add_option("--date", options.header.date, "Its date, else today's");
    CLI::Option *size =
        app.add_option("--size", options.size, "Length of a payload that is made up")
            ->type_name("BYTES")
            ->check(CLI::PositiveNumber.description(""))
            ->capture_default_str();
    CLI::Option *payload =
        app.add_option("--payload", options.payload, "File with the payload instead")
            ->type_name("FILE");
    app.add_flag("--show", options.show, "Verify an image and print its header, nothing else");
    app.add_option("IMAGE", options.image, "File of the image")->type_name("")->required();
    app.parse(count, words);

    for (const CLI::Option *option : {product, version}) {
        if (!options.show && option->count() == 0) {
            throw CLI::RequiredError(option->get_name());
        }
    }
    for (const CLI::Option *option : {product, version, date, size, payload}) {
        if (options.show && option->count() > 0) {
            throw CLI::ExcludesError("--show", option->get_name());
        }
    }
    if (size->count() > 0 && payload->count() > 0) {
        throw CLI::ExcludesError(size->get_name(), payload->get_name());
    }
    return options;
}

} // namespace

int main(int count, char **words)
{
    CLI::App app("Makes a firmware image for the simulated gateway.", "hg-mkimage");
    try {
        const Options options = parse(app, count, words);
        options.show ? show(options.image) : make(options);
        return kSuccess;
    } catch (const CLI::ParseError &outcome) {
        return app.exit(outcome) == 0 ? kSuccess : kWrongUsage;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "hg-mkimage: %s\n", failure.what());
        return kFailed;
    }
}
