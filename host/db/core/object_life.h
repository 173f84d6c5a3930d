// The life of an object: what it is at the moment, which changes that allows, and what the others answer.
#pragma once

#include "acadstrc.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <stdexcept>

namespace db {

// A member of an object was called that wants the object open in another way. Ends the command.
class open_violation : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

// What an object is at the moment.
enum class object_state : std::uint8_t {
    made,     // new, in no drawing; its maker may do everything
    closed,   // of a drawing, and handed out to nobody
    read,     // open for reading
    written,  // open for write
    told_of,  // others hear what happened to it; who opens it meanwhile reads
    lent,     // others hear that it joined the drawing; one of them may write
    borrowed, // lent, and open for write by one of them
    viewed,   // looks on a record beside those who have that open
    count
};

// What may be asked of an object; from `join` on by the host alone.
enum class object_change : std::uint8_t {
    open_for_read,
    open_for_write,
    upgrade,
    downgrade,
    modify,
    cancel,
    close,
    join,  // a drawing
    leave, // it, as another object takes its place
    tell,  // by who has it open for reading: others are to hear what happened to it
    told,  // all of them have
    lend,
    take_back,
    seize, // from those who left it open when a command ended
    count
};

// What a change makes of an object, or what refuses it.
struct object_answer {
    constexpr object_answer() = default;
    constexpr object_answer(object_state becomes) : next(becomes) {}
    constexpr object_answer(Acad::ErrorStatus refusal) : status(refusal) {}
    Acad::ErrorStatus status = Acad::eOk;
    object_state next = object_state::made;
};

// The answer to each change in each state.
inline constexpr auto object_answers = [] {
    using enum object_state;
    using change = object_change;
    struct row {
        object_change asked;
        std::initializer_list<object_state> of;
        object_answer answer;
    };
    const row rows[] = {
        {change::open_for_read, {closed, read}, read},
        {change::open_for_read, {told_of}, told_of},
        {change::open_for_read, {lent}, lent},
        {change::open_for_read, {written, borrowed}, Acad::eWasOpenForWrite},
        {change::open_for_write, {closed}, written},
        {change::open_for_write, {read}, Acad::eWasOpenForRead},
        {change::open_for_write, {written, borrowed}, Acad::eWasOpenForWrite},
        {change::open_for_write, {told_of, lent}, Acad::eWasNotifying},
        {change::upgrade, {read}, written},
        {change::upgrade, {lent}, borrowed},
        {change::upgrade, {written, borrowed}, Acad::eWasOpenForWrite},
        {change::upgrade, {told_of}, Acad::eWasNotifying},
        {change::upgrade, {viewed}, Acad::eHadMultipleReaders},
        {change::downgrade, {written}, told_of}, // and open for reading when they were told
        {change::downgrade, {borrowed}, lent},
        {change::modify, {written}, written},
        {change::modify, {borrowed}, borrowed},
        {change::cancel, {written}, told_of},
        {change::cancel, {borrowed}, Acad::eCloseWasNotifying},
        {change::close, {read}, read}, // but the last one closes it
        {change::close, {written}, told_of},
        {change::close, {told_of}, told_of},
        {change::close, {lent}, lent},
        {change::close, {borrowed, viewed}, Acad::eCloseWasNotifying},
        {change::join, {made}, written},
        {change::join, {closed, read, written, told_of, lent, borrowed, viewed}, Acad::eAlreadyInDb},
        {change::leave, {written}, made},
        {change::leave, {borrowed}, Acad::eWasNotifying},
        {change::tell, {read}, told_of},
        {change::tell, {told_of, lent, borrowed}, Acad::eWasNotifying},
        {change::told, {told_of}, read}, // or closed, if nobody reads
        {change::lend, {written}, lent},
        {change::take_back, {lent, borrowed}, written},
        {change::seize, {read, written}, written},
    };
    std::array<std::array<object_answer, static_cast<std::size_t>(count)>,
               static_cast<std::size_t>(change::count)>
        answers{};
    for (auto& of_change : answers) {
        of_change.fill(Acad::eNotOpenForWrite);
        of_change[static_cast<std::size_t>(made)] = Acad::eNoDatabase;
    }
    for (const row& one : rows)
        for (const object_state state : one.of)
            answers[static_cast<std::size_t>(one.asked)][static_cast<std::size_t>(state)] = one.answer;
    return answers;
}();

class object_life {
public:
    constexpr object_life(object_state state = object_state::made) : state_(state) {}

    // What a change would be answered; eOk when it is legal.
    Acad::ErrorStatus ask(object_change change) const {
        if (const Acad::ErrorStatus refusal = answer_to(change).status; refusal != Acad::eOk)
            return refusal;
        if (change == object_change::open_for_read && readers_ >= most_readers)
            return Acad::eAtMaxReaders;
        if (change == object_change::upgrade && readers_ > 1)
            return Acad::eHadMultipleReaders;
        if (change == object_change::close && is_notifying() && readers_ == 0)
            return Acad::eCloseWasNotifying;
        return Acad::eOk;
    }

    // Makes a change if it is legal, and answers the same.
    Acad::ErrorStatus make(object_change change) {
        const Acad::ErrorStatus status = ask(change);
        if (status == Acad::eOk)
            become(change);
        return status;
    }

    // Makes one that the host makes when it is legal alone: open_violation otherwise.
    void must(object_change change) {
        if (make(change) != Acad::eOk)
            throw open_violation("an object was closed or opened while the host had it");
    }

    bool is_new() const { return state_ == object_state::made; }
    bool is_closed() const { return state_ == object_state::closed; }
    bool is_written() const { return ask(object_change::modify) == Acad::eOk; }
    bool is_borrowed() const { return state_ == object_state::borrowed; }
    // Others are told of it: closed to all but readers.
    bool is_notifying() const {
        return state_ == object_state::told_of || state_ == object_state::lent ||
               state_ == object_state::borrowed;
    }

    // A transaction keeps it open: who closes it ends openings beside the transaction's alone.
    void keep(bool kept) { kept_ = kept; }
    bool is_kept() const { return kept_; }
    bool stays_open() const { return kept_ && readers_ <= 1; }

private:
    static constexpr std::uint16_t most_readers = 256;

    const object_answer& answer_to(object_change change) const {
        return object_answers[static_cast<std::size_t>(change)][static_cast<std::size_t>(state_)];
    }

    void become(object_change change) {
        if (change == object_change::leave) {
            *this = {};
            return;
        }
        const bool was_written = is_written();
        state_ = answer_to(change).next;
        if (change == object_change::open_for_read)
            ++readers_;
        else if (change == object_change::tell || (change == object_change::close && !was_written))
            --readers_;
        else if (change == object_change::upgrade || change == object_change::seize)
            readers_ = 0;
        if (state_ == object_state::read && readers_ == 0)
            state_ = object_state::closed;
    }

    object_state state_;
    bool kept_ = false;
    std::uint16_t readers_ = 0; // how many have it open for reading
};

} // namespace db
