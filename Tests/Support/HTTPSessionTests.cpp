#include "Support/Network/HTTPSession.h"

#include <gtest/gtest.h>

#include "Tests/Kit/Eventually.h"
#include "Tests/Kit/TestServer.h"

namespace orvel {
namespace {

using test::eventually;
using test::ServedPage;

struct HTTPSessionTest : testing::Test {
  test::TestServer server;
  std::unique_ptr<HTTPSession> session = HTTPSession::ephemeral();

  std::string at(const std::string& path) { return server.proxy() + path; }

  HTTPResult get(const std::string& url, const HTTPLimits& limits = {}) {
    std::optional<HTTPResult> answer;
    session->fetch(*URL::parse(url), limits, [&](HTTPResult given) {
      EXPECT_FALSE(answer) << "answered twice";
      answer = std::move(given);
    });
    EXPECT_FALSE(answer) << "answered at once";
    EXPECT_TRUE(eventually([&] { return answer.has_value(); })) << url;
    return answer.value_or(HTTPAnswer{});
  }
  std::optional<HTTPFailure> failure(const std::string& url, const HTTPLimits& limits = {}) {
    const auto answer = get(url, limits);
    return answer ? std::nullopt : std::optional(answer.error());
  }
};

// "hello hello hello hello", packed.
const ServedPage kPacked{
    .body =
        std::string("\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\xff\xcb\x48\xcd\xc9\xc9\x57\xc8\x40\x27"
                    "\x01\xe3\x51\x3d\x8d\x17\x00\x00\x00",
                    28),
    .headers = {{"Content-Encoding", "gzip"}}};

TEST_F(HTTPSessionTest, AnswersWithStatusBodyAndWhereRedirectsLed) {
  server.serve(at("/a"), ServedPage{.body = "hello"});
  server.serve(at("/missing"), ServedPage{.body = "none", .status = 404});
  server.serve(at("/moved"), ServedPage{.status = 302, .headers = {{"Location", "/a"}}});
  server.serve(at("/packed"), kPacked);
  const auto answer = get(at("/a"));
  ASSERT_TRUE(answer);
  EXPECT_TRUE(answer->isOK());
  EXPECT_EQ(answer->body, "hello");
  EXPECT_EQ(get(at("/missing"))->status, 404);
  EXPECT_EQ(get(at("/missing"))->body, "none");
  EXPECT_EQ(get(at("/moved"))->url, at("/a"));
  EXPECT_EQ(get(at("/packed"))->body, "hello hello hello hello");
}

TEST_F(HTTPSessionTest, KeepsNothingBetweenRequests) {
  server.serve(at("/a"), ServedPage{.body = "x",
                                    .headers = {{"Set-Cookie", "k=v; Max-Age=999"},
                                                {"Cache-Control", "max-age=999"}}});
  get(at("/a"));
  get(at("/a"));
  EXPECT_EQ(server.requestCount(at("/a")), 2);
  for (const auto& request : server.requests()) EXPECT_EQ(request.headers.count("cookie"), 0u);
}

TEST_F(HTTPSessionTest, TellsFailuresApart) {
  server.serve(at("/ten"), ServedPage{.body = "0123456789"});
  server.serve(at("/packed"), kPacked);
  server.serve(at("/short"), ServedPage{.body = "0123456789", .truncate = 4});
  server.serve(at("/slow"), ServedPage{.body = "late", .delay = 5});
  server.serve(at("/round"), ServedPage{.status = 302, .headers = {{"Location", "/round"}}});
  EXPECT_TRUE(get(at("/ten"), {.mostBytes = 10}));
  EXPECT_EQ(failure(at("/ten"), {.mostBytes = 9}), HTTPFailure::TooLarge);
  EXPECT_EQ(failure(at("/packed"), {.mostBytes = 22}), HTTPFailure::TooLarge)
      << "the limit is on what is unpacked";
  EXPECT_EQ(failure(at("/short")), HTTPFailure::CutOff);
  EXPECT_EQ(failure(at("/slow"), {.timeout = 100ms}), HTTPFailure::TimedOut);
  EXPECT_EQ(failure(at("/round")), HTTPFailure::TooManyRedirects);
  EXPECT_EQ(failure("http://127.0.0.1:1/"), HTTPFailure::Unreachable);
  EXPECT_EQ(failure("file:///etc/hostname"), HTTPFailure::Unreachable);
  EXPECT_EQ(failure("http://[/"), HTTPFailure::Unreachable);
}

TEST_F(HTTPSessionTest, EndsWhatIsUnderWayWithItself) {
  server.serve(at("/slow"), ServedPage{.body = "late", .delay = 5});
  std::optional<HTTPResult> answer;
  session->fetch(*URL::parse(at("/slow")), {}, [&](HTTPResult given) { answer = given; });
  ASSERT_TRUE(eventually([&] { return server.requestCount(at("/slow")) == 1; }));
  session.reset();
  EXPECT_FALSE(answer);
  EXPECT_TRUE(eventually([&] { return answer.has_value(); }));
  ASSERT_FALSE(*answer);
  EXPECT_EQ(answer->error(), HTTPFailure::Cancelled);
}

}  // namespace
}  // namespace orvel
