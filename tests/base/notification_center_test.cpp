#include "base/notification_center.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvane {
namespace {

TEST(NotificationCenter, DeliversByNameAndPosterInOrderOfObservers) {
    NotificationCenter center;
    std::vector<std::string> calls;
    const int poster = 0;
    const int otherPoster = 0;
    center.addObserver("A", [&](const Notification &) { calls.push_back("any-A"); });
    center.addObserver(
        "A", [&](const Notification &) { calls.push_back("poster-A"); }, &poster);
    center.addObserver("B", [&](const Notification &) { calls.push_back("any-B"); });

    center.post("A", &poster);
    center.post("A", &otherPoster);
    center.post("C", &poster);

    EXPECT_EQ(calls, (std::vector<std::string>{"any-A", "poster-A", "any-A"}));
}

TEST(NotificationCenter, ObserverMayRemoveItselfWhileBeingCalled) {
    NotificationCenter center;
    int calls = 0;
    NotificationCenter::Token token = 0;
    token = center.addObserver("A", [&](const Notification &) {
        ++calls;
        center.removeObserver(token);
    });
    center.post("A");
    center.post("A");
    EXPECT_EQ(calls, 1);
}

TEST(NotificationCenter, ScopedObserverStopsObservingWhenDestroyed) {
    int calls = 0;
    {
        ScopedObserver observer("tolvane.test.scoped", [&](const Notification &n) {
            EXPECT_EQ(n.userInfo.value(QStringLiteral("k")).toInt(), 7);
            ++calls;
        });
        NotificationCenter::defaultCenter().post("tolvane.test.scoped", nullptr,
                                                 {{QStringLiteral("k"), 7}});
    }
    NotificationCenter::defaultCenter().post("tolvane.test.scoped");
    EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace tolvane
