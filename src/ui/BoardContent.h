#pragma once
// What the board says about a snapshot of the engine, in words: everything but colours and places. User-interface
// thread.

#include "engine/EngineSnapshot.h"

#include <optional>
#include <vector>

namespace tarvin {

// The state that edge and ground of the board show.
enum class BoardState { Idle, Running, Done, Held, Silent, Failed, NoLink };

struct BoardContent {
    // Nothing has happened yet: the board leaves its place to the picture of the connection.
    bool isEmpty = false;
    BoardState state = BoardState::Idle;
    KelText number; // shown whole, however long it is
    KelText share;  // "63 %", or what is known in its place
    KelText title;  // the state in words
    KelText comment;
    // From 0 to 1. None: no bar.
    std::optional<double> bar;
    // The size is not known: the bar is a block that moves as data comes.
    bool isBarMoving = false;
    struct Fact {
        KelText caption;
        KelText value;
        bool operator==(const Fact&) const = default;
    };
    std::vector<Fact> facts;
    // Newest first.
    struct Recent {
        TransferOutcome outcome = TransferOutcome::Completed;
        KelText text;
        bool operator==(const Recent&) const = default;
    };
    std::vector<Recent> recents;
    // A failure that no user has seen: the one shown, or the newest behind what is shown.
    std::optional<TransferRecord> unseen;
    KelText unseenNote; // names the failures behind what is shown

    // All of it as one text, for a screen reader.
    KelText Spoken() const;
    bool operator==(const BoardContent&) const = default;
};

// `localTime` writes a time for the user, such as 14:03.
using LocalTimeWriter = KelText (*)(TransferRecord::Time time);

// `now` is of the engine's clock.
BoardContent DescribeBoard(const EngineSnapshot& snapshot, Clock::TimePoint now, LocalTimeWriter localTime);

// Whether the content changes while the snapshot stays, because it tells how long something lasts.
bool IsTimeShown(const EngineSnapshot& snapshot);

// Of a transfer that has not ended: 0 to 99. Requires total > 0.
int PercentDone(std::int64_t done, std::int64_t total);
// With blanks between groups of three digits.
KelText GroupedText(std::int64_t number);

}
