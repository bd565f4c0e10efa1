#include "headless/Alert.h"

#include "System/Terminal.h"

namespace headless {

void Alert::ShowInformation(const PMString& text) {
  platform::Terminal::Get().Write("hornbeam: " + text.GetUTF8String() + "\n");
}

}  // namespace headless
