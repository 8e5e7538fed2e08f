#include "engine/cursor_queue.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace tolvane {
namespace {

class CursorQueueTest : public ::testing::Test {
protected:
    std::vector<int> contents() const {
        std::vector<int> values;
        queue.forEach([&](const int &value) { values.push_back(value); });
        return values;
    }
    void addAll(std::initializer_list<int> values) {
        for (int value : values) {
            queue.add(value);
        }
    }

    NamedRecursiveMutex mutex{"test"};
    CursorQueue<int> queue{mutex};
};

TEST_F(CursorQueueTest, ReadMovesTheCursorWithoutRemoving) {
    addAll({1, 2, 3});
    ASSERT_NE(queue.read(), nullptr);
    EXPECT_EQ(*queue.read(), 2);
    EXPECT_EQ(queue.count(), 3);
    EXPECT_EQ(queue.readCount(), 2);
}

TEST_F(CursorQueueTest, ResetCursorOffersTheReadItemsAgainWithoutFreeingThem) {
    addAll({1, 2, 3});
    queue.read();
    queue.read();
    queue.resetCursor();
    EXPECT_EQ(queue.readCount(), 0);
    EXPECT_EQ(*queue.read(), 1);
    queue.removeThroughCursor();
    EXPECT_EQ(contents(), (std::vector<int>{2, 3}));
}

TEST_F(CursorQueueTest, ReadPastTheEndReturnsNullAndKeepsTheCursor) {
    addAll({1, 2});
    queue.read();
    queue.read();
    EXPECT_EQ(queue.read(), nullptr);
    EXPECT_EQ(queue.readCount(), 2);
    queue.add(3);  // a later append is the next read
    ASSERT_NE(queue.read(), nullptr);
    EXPECT_EQ(queue.readCount(), 3);
}

TEST_F(CursorQueueTest, RemoveFreesExactlyTheReadItems) {
    addAll({1, 2, 3, 4, 5});
    queue.read();
    queue.read();
    queue.read();
    queue.removeThroughCursor();
    EXPECT_EQ(contents(), (std::vector<int>{4, 5}));
    EXPECT_EQ(queue.count(), 2);
    EXPECT_EQ(*queue.read(), 4);  // reading starts again at the front
}

TEST_F(CursorQueueTest, RemoveWithoutAReadEmptiesTheQueue) {
    addAll({1, 2, 3});
    queue.removeThroughCursor();
    EXPECT_EQ(queue.count(), 0);
    EXPECT_EQ(queue.read(), nullptr);
    queue.removeThroughCursor();  // empty: nothing to do
    EXPECT_EQ(queue.count(), 0);
}

TEST_F(CursorQueueTest, RemoveAfterReadingEverythingLeavesItEmptyAndUsable) {
    addAll({1, 2});
    queue.read();
    queue.read();
    queue.removeThroughCursor();
    EXPECT_EQ(queue.count(), 0);
    queue.add(9);
    EXPECT_EQ(*queue.read(), 9);
}

TEST_F(CursorQueueTest, RemoveAllForgetsTheCursor) {
    addAll({1, 2, 3});
    queue.read();
    queue.removeAll();
    EXPECT_EQ(queue.count(), 0);
    EXPECT_EQ(queue.readCount(), 0);
    queue.add(7);
    EXPECT_EQ(*queue.read(), 7);
}

TEST_F(CursorQueueTest, OrderedInsertKeepsArrivalOrderForEqualKeys) {
    struct Timed {
        double time;
        int arrival;
    };
    NamedRecursiveMutex timedMutex{"timed"};
    CursorQueue<Timed> timed{timedMutex};
    const auto byTime = [](const Timed &item) { return item.time; };
    for (const Timed item : {Timed{2.0, 0}, Timed{1.0, 1}, Timed{2.0, 2}, Timed{0.5, 3},
                             Timed{3.0, 4}, Timed{1.0, 5}}) {
        timed.insertOrdered(item, byTime);
    }
    std::vector<int> arrivals;
    timed.forEach([&](const Timed &item) { arrivals.push_back(item.arrival); });
    EXPECT_EQ(arrivals, (std::vector<int>{3, 1, 5, 0, 2, 4}));
}

TEST_F(CursorQueueTest, HandedOutPointersSurviveLaterAppends) {
    NamedRecursiveMutex ownedMutex{"owned"};
    CursorQueue<std::unique_ptr<int>> owned{ownedMutex};
    owned.add(std::make_unique<int>(1));
    std::unique_ptr<int> *first = owned.read();
    for (int i = 0; i < 1000; ++i) {
        owned.add(std::make_unique<int>(i));
    }
    EXPECT_EQ(**first, 1);
}

}  // namespace
}  // namespace tolvane
