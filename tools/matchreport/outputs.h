// The outputs that the command line asks for.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "options.h"
#include "output.h"

namespace vok::matchreport {

using Outputs = std::vector<std::unique_ptr<Output>>;

/// Empty, with the reason in `error`, when one of them cannot be written.
Outputs outputsOf(const Options& options, std::string& error);

}  // namespace vok::matchreport
