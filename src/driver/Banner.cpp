#include "driver/Banner.h"

#include "messages/BuildStamp.h"
#include "platform/Platform.h"

namespace kvl {

std::string BannerText() {
    const BuildFacts build = ReadBuildStamp(BuildStamp());
    std::string text = "\nkvlRun - structured text in, generated text out\n\n";
    text.append("kvlRun - Version ").append(kVersion);
    text.append(" Build(").append(build.number).append(") on ").append(build.time).append("\n");
    text.append("       - Executable ").append(Files().ExecutablePath()).append("\n");
    return text;
}

}  // namespace kvl
