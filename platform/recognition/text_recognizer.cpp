#include "platform/recognition/text_recognizer.h"

#include "platform/modules/module_loader.h"

namespace tolvane {

TextRecognizer& textRecognizer() {
  static TextRecognizer& recognizer = *static_cast<TextRecognizer*>(
      ModuleLoader::load("tolvane-recognition", "tolvaneTextRecognizer"));
  return recognizer;
}

}  // namespace tolvane
