// SPDX-License-Identifier: MIT
// Signatures of images, and protection against a downgrade.
#include "firmware/image.h"
#include "firmware_fixture.h"
#include "io/text.h"

namespace {

class SignatureTest : public FirmwareTest {
  protected:
    SignatureTest()
    {
        make_key("key");
        make_key("other");
    }
    std::string signed_image(const std::string &version, uint32_t rollback,
                             const std::string &key = "key") const
    {
        return make_image({.version = version,
                           .payload_size = 1000,
                           .signing_key = path(key),
                           .rollback = rollback});
    }
    Options with_key() const { return options({.firmware_key = path("key.pub")}); }
    // Downloads the image. Result: empty on success, else the reason of the refusal.
    std::string offer(const std::string &image) const
    {
        write("offered.image", image);
        const std::string address = server_.address("offered.image");
        return devapi_download_image(address.c_str(), 0) == 0 ? "" : reason();
    }
    std::string install(const std::string &image) const
    {
        const std::string refusal = offer(image);
        return refusal.empty() ? version_after_flash() : refusal;
    }
    size_t warnings() const
    {
        const std::vector<std::string> traced = lines(path("trace"));
        return static_cast<size_t>(std::ranges::count_if(
            traced, [](auto &line) { return line.find("] warning, ") != std::string::npos; }));
    }

    static constexpr char kUnsigned[] = "the image is not signed";
    static constexpr char kForeign[] =
        "the image is invalid: its signature is not by the firmware key";
    static std::string too_old(int64_t number, int64_t running)
    {
        return "the image has the rollback number " + std::to_string(number) +
               ", which is less than the running firmware's " + std::to_string(running);
    }
};

TEST_F(SignatureTest, HasTheDocumentedFormat)
{
    const std::string image = signed_image("V4", 0x01020304);
    EXPECT_EQ(image.size(), 472u + 1000);
    EXPECT_EQ(image.substr(8, 4), std::string("\2\0\0\0", 4));
    EXPECT_EQ(image.substr(372, 4), "\4\3\2\1");
    simulated_gateway::Sha256 digest;
    digest.add(std::string_view(image).substr(0, 376));
    digest.add(std::string_view(image).substr(472));
    EXPECT_EQ(image.substr(376, 32), digest.finish());
    // The openssl program verifies the signature as well.
    write("signed", image.substr(0, 408));
    write("signature", image.substr(408, 64));
    run_openssl({"pkeyutl", "-verify", "-rawin", "-pubin", "-inkey", path("key.pub"), "-in",
                 path("signed"), "-sigfile", path("signature"), "-out", path("verdict")});
}

TEST_F(SignatureTest, WithAKeyOnlyImagesSignedByItAreAccepted)
{
    ASSERT_EQ(reopen(with_key()), "");
    EXPECT_EQ(offer(make_image()), kUnsigned);
    EXPECT_EQ(offer(signed_image("V4", 1, "other")), kForeign);
    EXPECT_FALSE(has_partial());
    EXPECT_EQ(reason(devapi_update_image()), "no image was downloaded");
    EXPECT_EQ(install(signed_image("V4", 1)), "V4");
    EXPECT_EQ(warnings(), 0u);
}

TEST_F(SignatureTest, EveryFlippedBitIsDetected)
{
    using namespace simulated_gateway;
    const ImageDemands demands = {.key = std::make_shared<const VerificationKey>(path("key.pub"))};
    const std::string image = signed_image("V4", 1);
    const auto holds = [&](const std::string &bytes) {
        try {
            ImageCheck check(demands);
            check.add(bytes);
            check.finish();
            return true;
        } catch (const Error &) {
            return false;
        }
    };
    EXPECT_TRUE(holds(image));
    for (size_t bit = 0; bit < 480 * 8; ++bit) {
        std::string flipped = image;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
        EXPECT_FALSE(holds(flipped)) << "bit " << bit;
    }
    for (size_t size = 0; size < 480; ++size) {
        EXPECT_FALSE(holds(image.substr(0, size))) << size;
    }
}

TEST_F(SignatureTest, ItCoversThePayloadByTheDigest)
{
    ASSERT_EQ(reopen(with_key()), "");
    const std::string image = signed_image("V4", 1);
    std::string other_payload = image;
    other_payload.back() = static_cast<char>(~other_payload.back());
    EXPECT_EQ(offer(other_payload),
              "the image is damaged: its SHA-256 is not the one in its header");
    simulated_gateway::Sha256 digest;
    digest.add(std::string_view(other_payload).substr(0, 376));
    digest.add(std::string_view(other_payload).substr(472));
    EXPECT_EQ(offer(other_payload.replace(376, 32, digest.finish())), kForeign);
}

TEST_F(SignatureTest, AForeignImageIsRefusedByItsHeaderAlone)
{
    write("large.image", make_image({.signing_key = path("other"), .rollback = 1}));
    ASSERT_EQ(reopen(with_key()), "");
    // The server never sends the second half.
    EXPECT_EQ(refusal(server_.address("hold/large.image")), kForeign);
}

TEST_F(SignatureTest, ASmallerNumberIsRefused)
{
    ASSERT_EQ(reopen(with_key()), "");
    EXPECT_EQ(install(signed_image("V5", 5)), "V5");
    EXPECT_EQ(json_of(path("state")).at("firmware").at("slot_2").at("rollback"), 5);
    EXPECT_EQ(offer(signed_image("V4", 4)), too_old(4, 5));
    EXPECT_EQ(offer(signed_image("V0", 0)), too_old(0, 5));
    ASSERT_EQ(reopen(with_key()), "");
    EXPECT_EQ(offer(signed_image("V4", 4)), too_old(4, 5));
    EXPECT_EQ(devapi_recovery(), 0);
    EXPECT_EQ(offer(signed_image("V4", 4)), too_old(4, 5));
    EXPECT_EQ(install(signed_image("V5.1", 5)), "V5.1");
    EXPECT_EQ(install(signed_image("V6", UINT32_MAX)), "V6");
    EXPECT_EQ(offer(signed_image("V5", 5)), too_old(5, UINT32_MAX));
}

TEST_F(SignatureTest, AStoredImageAllowsNoDowngrade)
{
    ASSERT_EQ(reopen(with_key()), "");
    const std::string old = signed_image("V5", 5);
    EXPECT_EQ(install(signed_image("V7", 7)), "V7");
    write("state.firmware/downloaded.image", old);
    EXPECT_EQ(reason(devapi_update_image()), too_old(5, 7));

    EXPECT_EQ(offer(signed_image("V8", 8)), "");
    EXPECT_EQ(devapi_update_image(), 0);
    write("state.firmware/slot_1.image", old);
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(version(), "V7");
    EXPECT_THAT(read(path("trace")), HasSubstr("firmware V8 does not start, " + too_old(5, 7)));
}

TEST_F(SignatureTest, AKeyAppliesToImagesAcceptedWithoutIt)
{
    EXPECT_EQ(offer(make_image()), "");
    ASSERT_EQ(reopen(with_key()), "");
    EXPECT_EQ(reason(devapi_update_image()), kUnsigned);

    ASSERT_EQ(reopen(options()), "");
    EXPECT_EQ(devapi_update_image(), 0);
    ASSERT_EQ(reopen(with_key()), "");
    simulated_gateway_power_cycle();
    EXPECT_EQ(version(), "V2.4.1");
    EXPECT_THAT(read(path("trace")), HasSubstr(std::string("does not start, ") + kUnsigned));
}

TEST_F(SignatureTest, WithoutAKeyAnyImageIsAcceptedWithAWarning)
{
    EXPECT_EQ(install(make_image()), "V3.2.0");
    EXPECT_THAT(read(path("trace")), HasSubstr("] warning, firmware V3.2.0 is not signed\n"));
    EXPECT_EQ(install(signed_image("V4", 4, "other")), "V4");
    EXPECT_THAT(read(path("trace")), HasSubstr("] warning, firmware V4 has a signature that is not "
                                               "verified without a firmware key\n"));
    EXPECT_EQ(warnings(), 2u);
    // The number is checked nevertheless, and an image without one has 0.
    EXPECT_EQ(offer(signed_image("V3", 3)), too_old(3, 4));
    EXPECT_EQ(offer(make_image()), too_old(0, 4));
}

TEST_F(SignatureTest, AnInvalidKeyIsAnError)
{
    EXPECT_EQ(reopen(options({.firmware_key = path("none")})),
              path("none") + ": No such file or directory");
    EXPECT_EQ(reopen(options({.firmware_key = path("key")})),
              path("key") + ": is not a public Ed25519 key in PEM");
    setenv("SIMULATED_GATEWAY_FIRMWARE_KEY", path("key.pub").c_str(), 1);
    ASSERT_EQ(open(options()), "");
    EXPECT_EQ(offer(make_image()), kUnsigned);
}

} // namespace
