#include "Models/Settings/Settings.h"
#include "Models/Settings/SiteSettings.h"
#include "Models/Store/BrowserStore.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

struct Permissions : ModelTest {
  Permissions() : tab(load("https://a.test/")), view(world.viewOnScreen(tab)) {}

  UIDelegate& page() { return *view->uiDelegate(); }
  // Absent while the user is asked.
  std::optional<PermissionDecision> request(CaptureDeviceType type) {
    decision.reset();
    page().requestMediaCapturePermission(*view, "a.test", type,
                                         [this](PermissionDecision given) { decision = given; });
    return decision;
  }
  void give(std::optional<size_t> button, bool isRemembered) {
    tab->questions.answer(tab->questions.current.peek()->id,
                          {.button = button, .isSuppressionOn = isRemembered});
  }

  TabRef tab;
  std::shared_ptr<FakeWebView> view;
  std::optional<PermissionDecision> decision;
};

TEST_F(Permissions, AreGivenAsRemembered) {
  using enum PermissionDecision;
  const auto both = CaptureDeviceType::CameraAndMicrophone;
  const struct {
    std::map<std::string, bool> remembered;
    std::optional<PermissionDecision> decision;
  } cases[] = {{{}, std::nullopt},
               {{{"camera", true}}, std::nullopt},
               {{{"microphone", false}}, Deny},
               {{{"camera", true}, {"microphone", false}}, Deny},
               {{{"camera", true}, {"microphone", true}}, Grant}};
  for (const auto& test : cases) {
    store().settings.sitePermissions = {{"a.test", test.remembered}};
    EXPECT_EQ(request(both), test.decision);
    if (!test.decision) give(std::nullopt, true);
    EXPECT_EQ(store().settings.sitePermissions.peek().at("a.test"), test.remembered);
  }
  view->isOnScreen = false;
  store().settings.sitePermissions = {};
  EXPECT_EQ(request(both), Deny) << "nobody sees the question";
}

TEST_F(Permissions, AreRememberedWhenTold) {
  using enum PermissionDecision;
  const auto both = CaptureDeviceType::CameraAndMicrophone;
  request(CaptureDeviceType::Camera);
  EXPECT_EQ(tab->questions.current.peek()->alert.messageText, "Allow “a.test” to use your camera?");
  give(0, false);
  EXPECT_EQ(decision, Grant);
  EXPECT_THAT(store().settings.sitePermissions.peek(), IsEmpty());
  store().settings.sitePermissions = {{"a.test", {{"camera", false}}}};
  store().siteSettings.setPermission("a.test", PageDevice::Camera, std::nullopt);
  EXPECT_THAT(store().settings.sitePermissions.peek(), IsEmpty());
  request(both);
  EXPECT_EQ(tab->questions.current.peek()->alert.messageText,
            "Allow “a.test” to use your camera and microphone?");
  give(0, true);
  const Settings::SitePermissions whole = {{"a.test", {{"camera", true}, {"microphone", true}}}};
  EXPECT_EQ(store().settings.sitePermissions.peek(), whole);
}

TEST_F(Permissions, APageThatGoesOnAskingIsNotHeardAndOneThatGoesAsksNoMore) {
  for (int i = 0; i < PagePermissions::kMaxRefusals; ++i) {
    EXPECT_EQ(request(CaptureDeviceType::Camera), std::nullopt);
    give(1, false);
  }
  EXPECT_EQ(request(CaptureDeviceType::Camera), PermissionDecision::Deny);
  tab->load(address("https://a.test/next"));
  settle();
  EXPECT_EQ(request(CaptureDeviceType::Camera), std::nullopt);
  tab->load(address("https://a.test/last"));
  settle();
  EXPECT_FALSE(tab->questions.current.peek());
  EXPECT_EQ(decision, PermissionDecision::Deny);
}

TEST(SiteData, BelongsToTheSiteAndTheDomainsAboveIt) {
  const std::vector<WebsiteDataRecord> all = {
      {"b.test"}, {"a.b.test"}, {"ab.test"}, {"c.a.b.test"}, {"test"}};
  std::vector<std::string> names;
  for (const auto& record : recordsOf("a.b.test", all)) names.push_back(record.displayName);
  EXPECT_THAT(names, ElementsAre("b.test", "a.b.test", "test"));
}

}  // namespace
}  // namespace orvel::test
