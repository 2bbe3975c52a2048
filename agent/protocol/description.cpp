// SPDX-License-Identifier: MIT
#include "protocol/description.h"

#include <memory>
#include <new>

namespace agent {

std::string Description::text() const
{
    const char *text = cJSON_GetStringValue(part_);
    return text != nullptr ? text : "";
}

std::vector<std::string> Description::texts() const
{
    std::vector<std::string> texts;
    for (const Description &element : *this) {
        texts.push_back(element.text());
    }
    return texts;
}

int64_t Description::number() const
{
    return cJSON_IsNumber(part_) != 0 ? static_cast<int64_t>(part_->valuedouble) : 0;
}

std::string Description::as_json() const
{
    const std::unique_ptr<char, decltype(&cJSON_free)> text(cJSON_PrintUnformatted(part_),
                                                            cJSON_free);
    if (text == nullptr) {
        throw std::bad_alloc();
    }
    return text.get();
}

} // namespace agent
