#pragma once
// What the program says about itself at the start of a run.

#include <string>

namespace kvl {

// Maker, version, build and the path of the executable; it goes to the console, and to the log when there is one.
std::string BannerText();

}  // namespace kvl
