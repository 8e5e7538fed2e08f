#include "engine/cursor_queue.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tolvane {
namespace {

TEST(CursorQueue, ReadResetAndRemoveFollowTheCursor) {
    const std::map<char, std::function<void(CursorQueue<int> &)>> operations = {
        {'r', [](CursorQueue<int> &queue) { queue.read(); }},
        {'c', [](CursorQueue<int> &queue) { queue.resetCursor(); }},
        {'R', [](CursorQueue<int> &queue) { queue.removeThroughCursor(); }},
        {'A', [](CursorQueue<int> &queue) { queue.removeAll(); }},
        {'+', [](CursorQueue<int> &queue) { queue.add(9); }},
    };
    struct Case {
        std::vector<int> initial;
        std::string operations;
        std::vector<int> contents;
        int readCount;
        int nextRead;  // -1 for none
    };
    const Case cases[] = {
        {{1, 2, 3}, "rr", {1, 2, 3}, 2, 3},       // reading removes nothing
        {{1, 2, 3}, "rrcrR", {2, 3}, 0, 2},       // reset offers the read items again
        {{1, 2}, "rrr", {1, 2}, 2, -1},           // past the end the cursor stays
        {{1, 2}, "rrr+", {1, 2, 9}, 2, 9},        // ...and a later append is next
        {{1, 2, 3, 4, 5}, "rrrR", {4, 5}, 0, 4},  // remove frees exactly the read items
        {{1, 2, 3}, "RR", {}, 0, -1},             // nothing read: everything goes
        {{1, 2}, "rrR+", {9}, 0, 9},              // emptied by reading, still usable
        {{1, 2, 3}, "rA+", {9}, 0, 9},            // remove-all forgets the cursor
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.operations);
        NamedRecursiveMutex mutex{"test"};
        CursorQueue<int> queue{mutex};
        for (int value : c.initial) {
            queue.add(value);
        }
        for (char operation : c.operations) {
            operations.at(operation)(queue);
        }
        std::vector<int> contents;
        queue.forEach([&](const int &value) { contents.push_back(value); });
        EXPECT_EQ(contents, c.contents);
        EXPECT_EQ(queue.count(), int(c.contents.size()));
        EXPECT_EQ(queue.readCount(), c.readCount);
        const int *next = queue.read();
        EXPECT_EQ(next ? *next : -1, c.nextRead);
    }
}

TEST(CursorQueue, HandedOutPointersSurviveLaterAppends) {
    NamedRecursiveMutex mutex{"owned"};
    CursorQueue<std::unique_ptr<int>> owned{mutex};
    owned.add(std::make_unique<int>(1));
    std::unique_ptr<int> *first = owned.read();
    for (int i = 0; i < 1000; ++i) {
        owned.add(std::make_unique<int>(i));
    }
    EXPECT_EQ(**first, 1);
}

}  // namespace
}  // namespace tolvane
