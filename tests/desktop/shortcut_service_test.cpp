#include "desktop/shortcut_service.h"

#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FakeHotKeys final : public HotKeys {
 public:
  [[nodiscard]] Registration registerKey(const HotKey& key) override {
    if (status == 0) {
      registered[++last_] = key;
    }
    ++attempts;
    return {status, last_};
  }
  void unregisterKey(Reference reference) override { registered.erase(reference); }
  void onPressed(std::function<void()> pressed) override { press = std::move(pressed); }

  [[nodiscard]] std::vector<std::uint32_t> codes() const {
    std::vector<std::uint32_t> found;
    for (const auto& [reference, key] : registered) {
      EXPECT_EQ(key.modifiers, 6144U);
      found.push_back(key.virtualKeyCode);
    }
    return found;
  }

  std::map<Reference, HotKey> registered;
  int status = 0;
  int attempts = 0;
  std::function<void()> press;

 private:
  Reference last_ = 0;
};

class FakeDefaults final : public UserDefaults {
 public:
  [[nodiscard]] std::optional<std::string> text(const std::string& key) const override {
    const auto found = texts.find(key);
    return found != texts.end() ? std::optional(found->second) : std::nullopt;
  }
  void setText(const std::string& key, const std::string& text) override { texts[key] = text; }

  std::map<std::string, std::string> texts;
};

class ShortcutTest : public testing::Test {
 protected:
  FakeHotKeys hotKeys_;
  FakeDefaults defaults_;
};

struct LetterCase {
  const char* letter;
  std::uint32_t code;
};
void PrintTo(const LetterCase& c, std::ostream* out) {
  *out << c.letter;
}

class ShortcutLetterTest : public ShortcutTest, public testing::WithParamInterface<LetterCase> {};

TEST_P(ShortcutLetterTest, IsRegisteredByItsPlaceAndKept) {
  ShortcutService shortcut(hotKeys_, defaults_);
  EXPECT_TRUE(shortcut.registerKey(GetParam().letter));
  EXPECT_THAT(hotKeys_.codes(), ElementsAre(GetParam().code));
  EXPECT_EQ(shortcut.key(), GetParam().letter);
  EXPECT_EQ(shortcut.status(), std::string("Control–Option–") + GetParam().letter + " registered");
  EXPECT_EQ(defaults_.texts["shortcutKey"], GetParam().letter);
  EXPECT_EQ(ShortcutService(hotKeys_, defaults_).key(), GetParam().letter);
}

INSTANTIATE_TEST_SUITE_P(Letters,
                         ShortcutLetterTest,
                         testing::Values(LetterCase{"C", 8},
                                         LetterCase{"X", 7},
                                         LetterCase{"V", 9},
                                         LetterCase{"F", 3},
                                         LetterCase{"K", 40}));

TEST_F(ShortcutTest, TakesTheStoredLetterElseC) {
  ShortcutService fresh(hotKeys_, defaults_);
  EXPECT_EQ(fresh.key(), "C");
  EXPECT_EQ(fresh.status(), "Not registered");
  EXPECT_THAT(hotKeys_.codes(), IsEmpty());
  EXPECT_TRUE(fresh.registerKey(std::nullopt));
  EXPECT_THAT(hotKeys_.codes(), ElementsAre(8U));
  EXPECT_EQ(defaults_.texts["shortcutKey"], "C");
  defaults_.texts["shortcutKey"] = "K";
  ShortcutService stored(hotKeys_, defaults_);
  EXPECT_TRUE(stored.registerKey(std::nullopt));
  EXPECT_THAT(hotKeys_.codes(), ElementsAre(8U, 40U));
}

TEST_F(ShortcutTest, LeavesEverythingAloneForALetterItDoesNotOffer) {
  ShortcutService shortcut(hotKeys_, defaults_);
  for (const char* letter : {"Q", "c", "", "CX"}) {
    EXPECT_FALSE(shortcut.registerKey(letter)) << letter;
  }
  EXPECT_EQ(shortcut.status(), "Not registered");
  EXPECT_EQ(shortcut.key(), "C");
  EXPECT_EQ(hotKeys_.attempts, 0);
  EXPECT_THAT(defaults_.texts, IsEmpty());
}

TEST_F(ShortcutTest, DoesNotAskTheSystemTwiceForTheSameLetter) {
  ShortcutService shortcut(hotKeys_, defaults_);
  EXPECT_TRUE(shortcut.registerKey("C"));
  EXPECT_TRUE(shortcut.registerKey("C"));
  EXPECT_TRUE(shortcut.registerKey(std::nullopt));
  EXPECT_EQ(hotKeys_.attempts, 1);
}

TEST_F(ShortcutTest, KeepsTheOldKeyWhenTheSystemRefusesTheNewOne) {
  ShortcutService shortcut(hotKeys_, defaults_);
  shortcut.registerKey("C");
  hotKeys_.status = -9878;
  EXPECT_FALSE(shortcut.registerKey("X"));
  EXPECT_EQ(shortcut.status(),
            "Control–Option–X unavailable (-9878). Choose another shortcut; the menu bar still "
            "works.");
  EXPECT_EQ(shortcut.key(), "C");
  EXPECT_EQ(defaults_.texts["shortcutKey"], "C");
  EXPECT_THAT(hotKeys_.codes(), ElementsAre(8U));
  hotKeys_.status = 0;
  EXPECT_TRUE(shortcut.registerKey("X"));
  EXPECT_THAT(hotKeys_.codes(), ElementsAre(7U));
}

TEST_F(ShortcutTest, TriggersWhilePresentAndReleasesItsKeyAtTheEnd) {
  int triggers = 0;
  {
    ShortcutService shortcut(hotKeys_, defaults_);
    shortcut.registerKey("C");
    hotKeys_.press();  // nobody listens yet
    shortcut.onTrigger([&triggers] { ++triggers; });
    hotKeys_.press();
  }
  EXPECT_EQ(triggers, 1);
  EXPECT_THAT(hotKeys_.codes(), IsEmpty());
  EXPECT_FALSE(hotKeys_.press);
}

}  // namespace
}  // namespace tolvane
