// SPDX-License-Identifier: MIT
#include "commands/topology_drawing.h"

#include "io/pages.h"

#include <sstream>

namespace agent {

namespace {

struct Strokes {
    const char *device;
    const char *last_device;
    const char *router;
    const char *last_router;
    const char *beside; // for a node with siblings below it
    const char *below_last;
    const char *more;
};

constexpr Strokes kUnicode = {"├─ ", "└─ ", "╞═ ", "╘═ ", "│  ", "   ", "…"};
constexpr Strokes kAscii = {"|- ", "`- ", "|= ", "`= ", "|  ", "   ", "..."};

std::string signal_of(const MeshNode &node)
{
    return node.dbm.empty() ? "" : node.dbm + " dBm";
}

std::vector<std::string> cells(const std::string &branch, const MeshNode &node)
{
    return {branch + node.name, node.access, signal_of(node), node.state};
}

class Tree {
  public:
    Tree(const std::vector<Router> &routers, const Strokes &strokes)
        : routers_(routers), strokes_(strokes)
    {
    }

    std::string text()
    {
        table_.row(cells("", routers_.front().self));
        add_below(routers_.front(), "");
        std::ostringstream drawing;
        table_.print(drawing, "");
        std::string text = drawing.str();
        text.pop_back(); // the trailing line end
        return text;
    }

  private:
    void add_below(const Router &router, const std::string &indent)
    {
        size_t left =
            router.devices.size() + (router.has_more_devices ? 1 : 0) + router.routers.size();
        const auto device_branch = [&] {
            return indent + (--left == 0 ? strokes_.last_device : strokes_.device);
        };
        for (const MeshNode &device : router.devices) {
            table_.row(cells(device_branch(), device));
        }
        if (router.has_more_devices) {
            table_.row({device_branch() + strokes_.more});
        }
        for (const size_t child : router.routers) {
            const bool is_last = --left == 0;
            table_.row(cells(indent + (is_last ? strokes_.last_router : strokes_.router),
                             routers_[child].self));
            add_below(routers_[child], indent + (is_last ? strokes_.below_last : strokes_.beside));
        }
    }

    const std::vector<Router> &routers_;
    const Strokes &strokes_;
    Table table_;
};

// A quoted string of the graph. As it may be a label, backslashes and entities, which Graphviz
// expands there, are escaped.
std::string quoted_label(const std::string &text)
{
    std::string label = "\"";
    for (const char letter : text) {
        if (letter == '&') {
            label += "&amp;";
            continue;
        }
        if (letter == '"' || letter == '\\') {
            label += '\\';
        }
        label += letter;
    }
    return label + '"';
}

std::string style_of(const MeshNode &node)
{
    return node.state.empty() ? "" : ", style=dashed";
}

// Identifiers are numbers assigned here, so that no two names can collide.
std::string statement(const std::string &identifier, const MeshNode &node)
{
    const std::string note = node.state.empty() ? "" : " (" + node.state + ")";
    return "    " + identifier + " [label=" + quoted_label(node.name + note) + style_of(node);
}

std::string edge(const std::string &from, const std::string &to, const MeshNode &node)
{
    const std::string signal = signal_of(node);
    const std::string gap = node.access.empty() || signal.empty() ? "" : " ";
    return "    " + from + " -- " + to + " [label=" + quoted_label(node.access + gap + signal) +
           style_of(node) + "];\n";
}

std::string router_identifier(size_t place)
{
    return "router" + std::to_string(place);
}

} // namespace

std::string tree_of(const std::vector<Router> &routers, bool ascii)
{
    return Tree(routers, ascii ? kAscii : kUnicode).text();
}

std::string graph_of(const std::vector<Router> &routers)
{
    std::string graph = "graph mesh {\n    rankdir=LR;\n";
    size_t devices = 0;
    for (size_t place = 0; place < routers.size(); ++place) {
        const std::string router = router_identifier(place);
        graph += statement(router, routers[place].self) + ", shape=box];\n";
        const auto add_device = [&](const MeshNode &device) {
            const std::string identifier = "device" + std::to_string(devices++);
            graph += statement(identifier, device) + "];\n" + edge(router, identifier, device);
        };
        for (const MeshNode &device : routers[place].devices) {
            add_device(device);
        }
        if (routers[place].has_more_devices) {
            add_device({kUnicode.more, "", "", ""});
        }
    }
    for (size_t place = 0; place < routers.size(); ++place) {
        for (const size_t child : routers[place].routers) {
            graph += edge(router_identifier(place), router_identifier(child), routers[child].self);
        }
    }
    return graph + "}";
}

} // namespace agent
