#include <map>
#include <string>
#include <vector>

#include <QGuiApplication>
#include <gtest/gtest.h>

#include "bridge/method_channel.h"
#include "catalog/capability_catalog.h"
#include "cli/job_settings.h"
#include "interface/interface_view.h"
#include "interface/value_variant.h"

namespace tolvane {
namespace {

using Texts = std::map<std::string, std::string>;

/// The palette's content before a host that only remembers which job was started.
class Palette {
 public:
  Palette() : host_(messengers_.host(), bridgeChannelName), view_(messengers_.interface()) {
    host_.setHandler([this](const MethodCall& call, const MethodReply& reply) {
      if (call.method == "startJob") {
        started_ = call.arguments;
      }
      reply.success();
    });
  }

  /// Opens the offer, types the values into its fields and presses Start.
  Value start(const Value& offer, const Texts& typed) {
    started_ = nullptr;
    QMetaObject::invokeMethod(
        &view_.item(), "choose", Q_ARG(QVariant, ValueVariant::fromValue(offer)));
    for (const auto& [key, text] : typed) {
      type(key, text);
    }
    QQuickItem* button = find(view_.item(), [](const QQuickItem& item) {
      return item.property("text").toString() == "Start";
    });
    QMetaObject::invokeMethod(button, "clicked");
    return started_;
  }

 private:
  void type(const std::string& key, const std::string& text) {
    QQuickItem* field = find(view_.item(), [&key](const QQuickItem& item) {
      return item.property("definition").toMap()["key"].toString().toStdString() == key;
    });
    ASSERT_NE(field, nullptr) << key;
    if (field->property("isFlag").toBool()) {
      field->setProperty("value", text == "true");
      return;
    }
    QQuickItem* input = find(
        *field, [](const QQuickItem& item) { return item.property("cursorPosition").isValid(); });
    input->setProperty("text", QString::fromStdString(text));
    QMetaObject::invokeMethod(input, "textEdited");
  }

  template <typename Test>
  static QQuickItem* find(QQuickItem& item, const Test& test) {
    if (test(item)) {
      return &item;
    }
    for (QQuickItem* child : item.childItems()) {
      if (QQuickItem* found = find(*child, test)) {
        return found;
      }
    }
    return nullptr;
  }

  MessengerPair messengers_;
  MethodChannel host_;
  InterfaceView view_;
  Value started_;
};

struct Edit {
  FileKind kind;
  const char* offer;
  std::vector<std::string> settings;  // on the command line
  Texts typed;                        // in the palette
};

/// The choices that somebody makes in both; every offer is also started as it is shown.
const Edit edits[] = {
    {FileKind::audio, "tool.compress", {"--set", "quality=0.4"}, {{"quality", "0.4"}}},
    {FileKind::image,
     "tool.annotate",
     {"--set", "text=5", "--set", "x=7"},
     {{"text", "5"}, {"x", "7"}}},
    {FileKind::pdf, "tool.split", {"--set", "range=2-3"}, {{"range", "2-3"}}},
    {FileKind::pdf, "tool.organize", {"--set", "pages=[2,0]"}, {{"pages", "3,1"}}},
    {FileKind::pdf, "convert.txt", {"--set", "ocr=false"}, {{"ocr", "false"}}},
};

class OfferJobTest : public ::testing::TestWithParam<FileKind> {
 protected:
  static std::vector<Value> offers() {
    const std::vector<FileInfo> files = {{"/file", GetParam(), ""}};
    std::vector<Value> all;
    for (const auto& offered : {CapabilityCatalog::formats(files, toolchain()),
                                CapabilityCatalog::tools(files, toolchain())}) {
      for (FileCapability offer : offered) {
        offer.requirement.reset();  // what is installed here does not matter
        all.push_back(offer.json());
      }
    }
    return all;
  }
  static LocalToolchain toolchain() { return LocalToolchain(); }

  void expectEqualJobs(const Value& offer,
                       const std::vector<std::string>& settings,
                       const Texts& typed) {
    SCOPED_TRACE(*offer["id"].text());
    const OfferJob expected = offerJob(Arguments::parse(settings), offer);
    const Value started = palette_.start(offer, typed);
    EXPECT_EQ(started["action"], Value(expected.action));
    EXPECT_EQ(started["options"], Value(expected.options));
    for (const Value& field : *offer["fields"].list()) {
      const std::string& key = *field["key"].text();
      EXPECT_TRUE(typed.contains(key) || started["options"][key] == field["default"]) << key;
    }
  }

  int count_ = 3;
  std::string words_[3] = {"test", "-platform", "offscreen"};
  char* pointers_[4] = {words_[0].data(), words_[1].data(), words_[2].data(), nullptr};
  QGuiApplication application_{count_, pointers_};
  Palette palette_;
};

TEST_P(OfferJobTest, TheCommandLineAndThePaletteStartTheSame) {
  for (const Value& offer : offers()) {
    // The palette wants to be told an order of pages.
    if (offer["nativeAction"] != Value("edit_pdf")) {
      expectEqualJobs(offer, {}, {});
    }
    for (const Edit& edit : edits) {
      if (edit.kind == GetParam() && offer["id"] == Value(edit.offer)) {
        expectEqualJobs(offer, edit.settings, edit.typed);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds,
                         OfferJobTest,
                         ::testing::Values(FileKind::image,
                                           FileKind::pdf,
                                           FileKind::video,
                                           FileKind::audio,
                                           FileKind::document),
                         [](const auto& kind) { return std::string(name(kind.param)); });

}  // namespace
}  // namespace tolvane
