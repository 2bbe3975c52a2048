// SPDX-License-Identifier: MIT
// hg-mkimage: makes firmware images for the simulated gateway, and shows what is in one.
#include "firmware/image.h"
#include "io/files.h"
#include "io/text.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <ctime>
#include <random>

namespace {

using namespace simulated_gateway;

enum ExitStatus {
    kSuccess = 0,
    kFailed = 1, // a file cannot be read or written, or the image is invalid
    kWrongUsage = 2,
};

constexpr char kFooter[] = R"(
Exit status:
  0  done
  1  a file cannot be read or written, or the image is invalid
  2  wrong usage

Examples:
  hg-mkimage --product HGU-AX3000 --version V3.2.0 new.image
  hg-mkimage --product HGU-AX3000 --version V3.2.0 --payload rootfs.bin new.image
  hg-mkimage --show new.image
  openssl genpkey -algorithm ed25519 -out key.pem
  openssl pkey -in key.pem -pubout -out key.pub
  hg-mkimage --product HGU-AX3000 --version V3.2.0 --sign key.pem --rollback 7 new.image
  hg-mkimage --show --firmware-key key.pub new.image
)";

struct Options {
    ImageHeader header;
    std::string payload; // a file; without one, a generated payload of the given size
    uint64_t size = 1U << 20;
    std::string image;
    bool show = false;
    std::string signing_key;  // file; without one the image is not signed
    std::string firmware_key; // file; without one a signature is not verified
};

std::string today()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts = {};
    char text[32];
    gmtime_r(&now, &parts);
    return {text, std::strftime(text, sizeof(text), "%Y-%m-%d", &parts)};
}

// Incompressible bytes that are the same for the same version in every run.
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
    std::optional<SigningKey> key;
    if (!options.signing_key.empty()) {
        key.emplace(options.signing_key);
        header.is_signed = true;
    }
    const auto with_payload = [&](const std::function<void(std::string_view)> &take) {
        if (options.payload.empty()) {
            invent_payload(options, take);
        } else {
            read_file(options.payload, take);
        }
    };
    // The header comes first and describes the payload, so the payload is read again for each step.
    with_payload([&](std::string_view bytes) { header.payload_size += bytes.size(); });
    if (header.payload_size == 0) {
        throw Error(options.payload + ": is empty");
    }
    Sha256 digest;
    digest.add(header.encode());
    with_payload([&](std::string_view bytes) { digest.add(bytes); });
    header.sha256 = digest.finish();
    if (key) {
        header.signature = key->sign(header.encode());
    }

    NewFile image(options.image);
    ImageCheck check({.product = header.product});
    const auto write = [&](std::string_view bytes) {
        check.add(bytes);
        image.write(bytes);
    };
    write(header.encode());
    with_payload(write);
    check.finish();
    image.replace();
}

void show(const std::string &file, const std::string &firmware_key)
{
    ImageDemands demands;
    if (!firmware_key.empty()) {
        demands.key = std::make_shared<const VerificationKey>(firmware_key);
    }
    ImageCheck check(demands);
    ImageHeader header;
    try {
        read_file(file, [&](std::string_view bytes) { check.add(bytes); });
        header = check.finish();
    } catch (const Error &failure) {
        const std::string reason = failure.what();
        throw Error(reason.starts_with(file + ": ") ? reason : file + ": " + reason);
    }
    std::printf("product: %s\nversion: %s\ndate: %s\npayload: %ju bytes\nSHA-256: %s\n",
                header.product.c_str(), header.version.c_str(), header.date.c_str(),
                static_cast<uintmax_t>(header.payload_size), hexadecimal(header.sha256).c_str());
    if (header.is_signed) {
        std::printf("rollback number: %ju\nsignature: %s\n",
                    static_cast<uintmax_t>(header.rollback),
                    demands.key ? "valid" : "not verified");
    } else {
        std::puts("signature: none");
    }
    if (std::fflush(stdout) != 0) {
        refuse_file("standard output");
    }
}

// Throws the exceptions of CLI11, for usage errors and for --help.
Options parse(CLI::App &app, int count, char **words)
{
    Options options;
    options.header.date = today();
    app.footer(kFooter);
    CLI::Option *product = app.add_option("--product", options.header.product,
                                          "Device type of the router that the image is for");
    CLI::Option *version =
        app.add_option("--version", options.header.version, "Version of the firmware");
    CLI::Option *date =
        app.add_option("--date", options.header.date, "Date of the firmware, else today's");
    CLI::Option *size = app.add_option("--size", options.size, "Length of a generated payload")
                            ->type_name("BYTES")
                            ->check(CLI::PositiveNumber.description(""))
                            ->capture_default_str();
    CLI::Option *payload =
        app.add_option("--payload", options.payload, "File with the payload instead")
            ->type_name("FILE");
    CLI::Option *sign = app.add_option("--sign", options.signing_key,
                                       "File with a private Ed25519 key, as PEM, to sign with")
                            ->type_name("KEY");
    CLI::Option *rollback =
        app.add_option("--rollback", options.header.rollback,
                       "Images with a lower number are refused once this firmware runs")
            ->type_name("NUMBER")
            ->capture_default_str();
    CLI::Option *firmware_key =
        app.add_option("--firmware-key", options.firmware_key,
                       "With --show: the image has to be signed by this public key")
            ->type_name("FILE");
    app.add_flag("--show", options.show, "Verify an image and print its header, nothing else");
    app.add_option("IMAGE", options.image, "Image file")->type_name("")->required();
    app.parse(count, words);

    for (const CLI::Option *option : {product, version}) {
        if (!options.show && option->count() == 0) {
            throw CLI::RequiredError(option->get_name());
        }
    }
    for (const CLI::Option *option : {product, version, date, size, payload, sign, rollback}) {
        if (options.show && option->count() > 0) {
            throw CLI::ExcludesError("--show", option->get_name());
        }
    }
    if (!options.show && firmware_key->count() > 0) {
        throw CLI::RequiresError(firmware_key->get_name(), "--show");
    }
    if (rollback->count() > 0 && sign->count() == 0) {
        throw CLI::RequiresError(rollback->get_name(), sign->get_name());
    }
    if (size->count() > 0 && payload->count() > 0) {
        throw CLI::ExcludesError(size->get_name(), payload->get_name());
    }
    return options;
}

int run(int count, char **words)
{
    CLI::App app("Makes a firmware image for the simulated gateway.", "hg-mkimage");
    Options options;
    try {
        options = parse(app, count, words);
    } catch (const CLI::ParseError &outcome) {
        return app.exit(outcome) == 0 ? kSuccess : kWrongUsage;
    }
    options.show ? show(options.image, options.firmware_key) : make(options);
    return kSuccess;
}

} // namespace

int main(int count, char **words)
{
    try {
        return run(count, words);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "hg-mkimage: %s\n", failure.what());
        return kFailed;
    }
}
