// A table of a page.
#pragma once

#include <string>
#include <vector>

namespace vok::matchreport {

/// Appends a table with a head. Caption, heads and cells are markup.
class TableWriter {
 public:
  TableWriter(std::string& out, const std::string& caption, const std::vector<std::string>& heads,
              const char* look = "")
      : out_(out) {
    out_ += "<div class='wide'><table class='" + std::string(look) + "'>";
    if (!caption.empty()) out_ += "<caption>" + caption + "</caption>";
    out_ += "<thead><tr>";
    for (const std::string& head : heads) out_ += "<th>" + head + "</th>";
    out_ += "</tr></thead><tbody>\n";
  }

  void row(const std::vector<std::string>& cells) {
    out_ += "<tr>";
    for (const std::string& cell : cells) out_ += "<td>" + cell + "</td>";
    out_ += "</tr>\n";
  }

  void end() { out_ += "</tbody></table></div>\n"; }

 private:
  std::string& out_;
};

}  // namespace vok::matchreport
