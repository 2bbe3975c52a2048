// SPDX-License-Identifier: MIT
// Resolves names on a separate thread: a silent name server takes ten seconds, and no other
// transport may wait for it.
#pragma once

#include <boost/asio/io_context.hpp>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace agent::service {

class NameLookup {
  public:
    // Numeric addresses, in the resolver's order; if there are none, why.
    using Done = std::function<void(std::vector<std::string> addresses, std::string problem)>;

    explicit NameLookup(boost::asio::io_context &loop);
    // Does not wait for the thread.
    ~NameLookup();
    NameLookup(const NameLookup &) = delete;
    NameLookup &operator=(const NameLookup &) = delete;

    // Calls back on the loop. Not to be called again before that.
    void start(const std::string &host, Done done);

  private:
    class Shared;
    std::shared_ptr<Shared> shared_;
};

} // namespace agent::service
