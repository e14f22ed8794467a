// The files of the page that are not C++, as texts. CMake writes assets.cpp from them.
#pragma once

#include <string_view>

namespace vok::matchreport {

extern const std::string_view PALETTE_CSS;
extern const std::string_view PAGE_CSS;
extern const std::string_view REPLAY_HTML;
extern const std::string_view REPLAY_JS;

}  // namespace vok::matchreport
