// SPDX-License-Identifier: MIT
#include "system/flow_tables.h"

#include "system/text.h"

#include <memory>
#include <nftables/libnftables.h>
#include <nlohmann/json.hpp>

namespace linux_gateway {

using Json = nlohmann::json;

static std::string text_of(const Json &object, const char *key)
{
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? printable(found->get<std::string>()) : "";
}

std::set<std::string> flow_tables_in(const std::string &json)
{
    const Json listing = Json::parse(json, nullptr, false);
    const Json objects = listing.is_object() ? listing.value("nftables", Json()) : Json();
    std::set<std::string> names;
    for (const Json &object : objects) {
        if (object.is_object() && object.contains("flowtable")) {
            const Json &table = object["flowtable"];
            names.insert(text_of(table, "name") + " (table " + text_of(table, "family") + ' ' +
                         text_of(table, "table") + ')');
        }
    }
    return names;
}

std::set<std::string> find_flow_tables()
{
    struct Free {
        void operator()(nft_ctx *context) const { nft_ctx_free(context); }
    };
    const std::unique_ptr<nft_ctx, Free> context(nft_ctx_new(NFT_CTX_DEFAULT));
    if (context == nullptr) {
        return {};
    }
    nft_ctx_output_set_flags(context.get(), NFT_CTX_OUTPUT_JSON);
    nft_ctx_buffer_output(context.get());
    nft_ctx_buffer_error(context.get()); // else errors go to standard error
    const bool is_listed = nft_run_cmd_from_buffer(context.get(), "list flowtables") == 0;
    const char *listing = nft_ctx_get_output_buffer(context.get());
    return is_listed && listing != nullptr ? flow_tables_in(listing) : std::set<std::string>();
}

std::string flow_table_sentence(const std::string &flow_table)
{
    return "nftables has the flow table " + flow_table +
           ": connections in it may bypass blocks and limits; remove it";
}

} // namespace linux_gateway
