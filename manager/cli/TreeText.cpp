#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "cli/Printable.h"
#include "cli/TreeModel.h"
#include "cli/Words.h"

namespace ZebManager {
namespace {

struct Cell {
  std::string text;
  Tone tone = Tone::Plain;
};

/// Lines of one kind share their columns.
enum class Kind { Card, Port, Team, Member, Address, Vlan, Count };

struct Line {
  Kind kind;
  std::vector<Cell> cells;
  std::vector<Line> below;
};

struct Branches {
  const char* item;
  const char* lastItem;
  const char* below;
  const char* belowLast;
};

constexpr Branches kBoxes = {"├─ ", "└─ ", "│  ", "   "};
constexpr Branches kAscii = {"|- ", "`- ", "|  ", "   "};

/// Leaves out what is empty.
std::string joined(std::initializer_list<std::string> texts, std::string_view between) {
  std::string all;
  for (const std::string& text : texts) {
    if (!text.empty()) all.append(all.empty() ? "" : between).append(text);
  }
  return all;
}

std::string labelled(const char* label, const std::string& text) {
  return text.empty() ? text : label + text;
}

Cell statusCell(const TreeStatus& status) {
  return {status.words, toneOfStatus(status.code)};
}

Line addressLine(const TreeAddress& address) {
  const std::string extent =
      address.prefixLength ? "/" + std::to_string(*address.prefixLength) : labelled(" mask ", address.mask);
  return {
      Kind::Address,
      {{address.address + extent}, {address.origin, Tone::Faint}, {labelled("gateway ", address.gateway)}},
      {}};
}

void appendAddresses(Line& line, const TreeInterface& interface) {
  for (const TreeAddress& address : interface.addresses) line.below.push_back(addressLine(address));
}

void appendVlans(Line& line, const std::vector<TreeVlan>& vlans) {
  for (const TreeVlan& vlan : vlans) {
    line.below.push_back({Kind::Vlan,
                          {{"VLAN " + std::to_string(vlan.id)},
                           {vlan.name, Tone::Strong},
                           statusCell(vlan.status),
                           {linkWords(vlan.status.code)}},
                          {}});
    appendAddresses(line.below.back(), vlan);
  }
}

std::string duplexWords(const TreePort& port) {
  if (port.speed == 0 || !port.fullDuplex) return {};
  return *port.fullDuplex ? "full duplex" : "half duplex";
}

std::string portName(const TreePort& port) {
  if (!port.name.empty()) return port.name;
  return port.number == 0 ? "port" : "port " + std::to_string(port.number);
}

/// What a link gives away of what the port can.
std::string shortfall(const TreePort& port) {
  if (port.speed == 0) return {};
  const bool slow = port.speed < port.maxSpeed;
  return joined({slow ? "below its " + speedWords(port.maxSpeed) : "",
                 port.fullDuplex && !*port.fullDuplex ? "one direction at a time" : ""},
                ", ");
}

Line portLine(const TreePort& port) {
  const std::string team = joined({labelled("in ", port.team), port.team.empty() ? "" : port.role}, ", ");
  Line line{Kind::Port,
            {{portName(port), Tone::Strong},
             statusCell(port.status),
             {linkWords(port.status.code)},
             {joined({speedWords(port.speed), duplexWords(port)}, " ")},
             {shortfall(port), Tone::Warning},
             {port.macAddress},
             {team}},
            {}};
  appendAddresses(line, port);
  appendVlans(line, port.vlans);
  return line;
}

Line cardLine(const TreeCard& card) {
  Line line{Kind::Card,
            {{card.product, Tone::Strong},
             statusCell(card.status),
             {card.location},
             {labelled("driver ", joined({card.driver, card.driverVersion}, " "))},
             {labelled("firmware ", card.firmware)}},
            {}};
  for (const TreePort& port : card.ports) line.below.push_back(portLine(port));
  return line;
}

Line teamLine(const TreeTeam& team) {
  Line line{Kind::Team,
            {{"team " + team.name, Tone::Strong},
             statusCell(team.status),
             {team.mode},
             {team.redundancy},
             {speedWords(team.speed)},
             {team.macAddress}},
            {}};
  for (const TreeMember& member : team.members) {
    line.below.push_back({Kind::Member,
                          {{"member " + member.port, Tone::Strong},
                           {member.role},
                           statusCell(member.portStatus),
                           {linkWords(member.portStatus.code)}},
                          {}});
  }
  appendAddresses(line, team);
  appendVlans(line, team.vlans);
  return line;
}

using Widths = std::array<std::array<std::size_t, 8>, static_cast<std::size_t>(Kind::Count)>;

std::size_t& widthIn(Widths& widths, const Line& line, std::size_t column) {
  return widths[static_cast<std::size_t>(line.kind)][column];
}

void measure(std::vector<Line>& lines, Widths& widths) {
  for (Line& line : lines) {
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
      line.cells[i].text = printable(line.cells[i].text);
      std::size_t& width = widthIn(widths, line, i);
      width = std::max(width, widthOf(line.cells[i].text));
    }
    measure(line.below, widths);
  }
}

/// The cells in their columns. What does not fit into `room` goes to further lines, which begin with `below`;
/// 0: everything fits.
std::string textOfCells(const Line& line, Widths& widths, std::size_t room, const std::string& below,
                        bool colour) {
  std::string text;
  std::size_t gap = 0;
  std::size_t taken = 0;
  for (std::size_t i = 0; i < line.cells.size(); ++i) {
    const Cell& cell = line.cells[i];
    const std::size_t width = widthIn(widths, line, i);
    if (width == 0) continue;
    const std::size_t own = widthOf(cell.text);
    if (own > 0) {
      if (room > 0 && taken > 0 && taken + gap + own > room) {
        text += "\n" + below;
        taken = gap = 0;
      }
      text.append(gap, ' ').append(toned(cut(cell.text, room), cell.tone, colour));
      taken += gap + own;
      gap = 0;
    }
    gap += width - own + 2;
  }
  return text;
}

struct Drawing {
  const Branches& branches;
  std::size_t width;
  bool colour;
};

void append(std::string& out, const std::string& indent, const std::vector<Line>& lines, Widths& widths,
            const Drawing& drawing) {
  constexpr std::size_t kLeast = 30;
  for (const Line& line : lines) {
    const bool last = &line == &lines.back();
    const std::string inside = indent + (last ? drawing.branches.belowLast : drawing.branches.below);
    const std::string stem =
        inside + (line.below.empty() ? "    " : std::string(drawing.branches.below) + " ");
    const std::size_t used = widthOf(stem);
    const std::size_t room =
        drawing.width == 0 ? 0 : std::max(kLeast, drawing.width - std::min(used, drawing.width));
    out += toned(indent + (last ? drawing.branches.lastItem : drawing.branches.item), Tone::Faint,
                 drawing.colour) +
           textOfCells(line, widths, room, toned(stem, Tone::Faint, drawing.colour), drawing.colour) + "\n";
    append(out, inside, line.below, widths, drawing);
  }
}

}  // namespace

std::string textOfTree(const Tree& tree, bool colour, TreeLines lines, std::size_t width) {
  std::vector<Line> top;
  for (const TreeCard& card : tree.cards) top.push_back(cardLine(card));
  for (const TreeTeam& team : tree.teams) top.push_back(teamLine(team));
  Widths widths{};
  measure(top, widths);
  std::string out = toned(printable(tree.host), Tone::Strong, colour) +
                    (tree.cards.empty() ? ": no Ethernet adapters" + labelled("; ", tree.hint) : "") + "\n";
  append(out, "", top, widths, {lines == TreeLines::Boxes ? kBoxes : kAscii, width, colour});
  return out;
}

TreeLines linesOfLocale() {
  const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
  if (!locale) return TreeLines::Ascii;
  const bool utf8 = std::string_view(nl_langinfo_l(CODESET, locale)) == "UTF-8";
  freelocale(locale);
  return utf8 ? TreeLines::Boxes : TreeLines::Ascii;
}

}  // namespace ZebManager
