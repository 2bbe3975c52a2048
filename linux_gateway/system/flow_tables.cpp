// SPDX-License-Identifier: MIT
#include "system/flow_tables.h"

#include "system/text.h"

#include <memory>
#include <nftables/libnftables.h>
#include <nlohmann/json.hpp>

namespace linux_gateway {

std::optional<std::string> flow_table_in(const std::string &json)
{
    using Json = nlohmann::json;
    const Json listing = Json::parse(json, nullptr, false);
    const Json objects = listing.is_object() ? listing.value("nftables", Json()) : Json();
    for (const Json &object : objects) {
        if (object.is_object() && object.contains("flowtable")) {
            const Json &table = object["flowtable"];
            const auto name = table.find("name");
            return name != table.end() && name->is_string() ? printable(name->get<std::string>())
                                                            : "";
        }
    }
    return std::nullopt;
}

std::optional<std::string> find_flow_table()
{
    struct Free {
        void operator()(nft_ctx *context) const { nft_ctx_free(context); }
    };
    const std::unique_ptr<nft_ctx, Free> context(nft_ctx_new(NFT_CTX_DEFAULT));
    if (context == nullptr) {
        return std::nullopt;
    }
    nft_ctx_output_set_flags(context.get(), NFT_CTX_OUTPUT_JSON);
    nft_ctx_buffer_output(context.get());
    nft_ctx_buffer_error(context.get()); // else errors go to standard error
    const bool is_listed = nft_run_cmd_from_buffer(context.get(), "list flowtables") == 0;
    const char *listing = nft_ctx_get_output_buffer(context.get());
    return is_listed && listing != nullptr ? flow_table_in(listing) : std::nullopt;
}

} // namespace linux_gateway
