// Pasting from every kind of clipboard owner.

#include "display/core/clipboard_owner.h"
#include "display/core/engine_desk.h"

#include "gui/ORX/core/clipboard.h"
#include "gui/ORX/core/window_table.h"
#include "support/child_process.h"

#include <fstream>

namespace {

struct ClipboardTest : testing::Test {
    CallLog log;
    EngineDesk desk;
    WindowId id = desk.show_window(&log);

    const std::string& display() const { return desk.server.display_name(); }
    std::string selection_of(const std::string& text) const {
        return "selection [" + text + "] " + std::to_string(id);
    }
    std::string no_selection() const { return "selection - " + std::to_string(id); }
};

// Runs a clipboard program that takes its text from a file, and stays in front as the owner.
support::ChildOptions owner_program(const std::string& display, const std::string& command) {
    support::ChildOptions options;
    options.command = {"/bin/sh", "-c", "DISPLAY=" + display + " exec " + command};
    return options;
}

TEST_F(ClipboardTest, WithoutAnOwnerOnlyTheFocusChanges) {
    clipboard_request_paste(desk.engine, id);
    EXPECT_EQ(desk.view.input_focus(), desk.x_window(id));
    desk.settle(id, &log);
    EXPECT_EQ(log.count("selection"), 0);
}

TEST_F(ClipboardTest, TextReachesTheWindow) {
    const ClipboardOwner owner(display(), OwnerManners::text, "pass word");
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(selection_of("pass word")));
}

TEST_F(ClipboardTest, EmptyTextIsTextAndNotARefusal) {
    const ClipboardOwner owner(display(), OwnerManners::text, "");
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(selection_of("")));
}

TEST_F(ClipboardTest, AMegabyteArrivesWholeInOnePiece) {
    std::string text(1 << 20, 'x');
    text.front() = 'a';
    text.back() = 'z';
    const ClipboardOwner owner(display(), OwnerManners::text, text);
    clipboard_request_paste(desk.engine, id);
    ASSERT_TRUE(log.wait_for_count("selection", 1));
    EXPECT_TRUE(log.has(selection_of(text)));
}

TEST_F(ClipboardTest, ARefusalGivesNoText) {
    const ClipboardOwner owner(display(), OwnerManners::refuses);
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(no_selection()));
}

TEST_F(ClipboardTest, ARefusalDoesNotBringBackTheTextBefore) {
    {
        const ClipboardOwner owner(display(), OwnerManners::text, "old");
        clipboard_request_paste(desk.engine, id);
        ASSERT_TRUE(log.wait_for(selection_of("old")));
    }
    const ClipboardOwner owner(display(), OwnerManners::refuses);
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(no_selection()));
}

TEST_F(ClipboardTest, AnOwnerOfOtherTextKindsGivesNoText) {
    const ClipboardOwner owner(display(), OwnerManners::utf8_only, "grün");
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(no_selection()));
}

TEST_F(ClipboardTest, TextInPiecesCountsAsNone) {
    const ClipboardOwner owner(display(), OwnerManners::in_pieces);
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(no_selection()));
    desk.settle(id, &log);
    EXPECT_EQ(log.count("selection"), 1);
}

TEST_F(ClipboardTest, AnOwnerThatDiesWhenAskedLeavesTheWindowWorking) {
    {
        const ClipboardOwner owner(display(), OwnerManners::dies);
        clipboard_request_paste(desk.engine, id);
        ASSERT_TRUE(support::wait_until([&] { return owner.requests() == 1; }));
    }
    desk.settle(id, &log);
    const ClipboardOwner next(display(), OwnerManners::text, "next");
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(selection_of("next")));
}

TEST_F(ClipboardTest, AWindowThatIsNotOnScreenMayAsk) {
    const ClipboardOwner owner(display(), OwnerManners::text, "hidden");
    const WindowId hidden = desk.make_window(&log);
    clipboard_request_paste(desk.engine, hidden);
    EXPECT_TRUE(log.wait_for("selection [hidden] " + std::to_string(hidden)));
}

TEST_F(ClipboardTest, TheMiddleButtonPastesThroughTheWindowsOwnCallback) {
    const ClipboardOwner owner(display(), OwnerManners::text, "clicked");
    log.actions["press"] = [this] { clipboard_request_paste(desk.engine, id); };
    events::Sender{desk.view, desk.x_window(id)}.press(5, 5, 2);
    EXPECT_TRUE(log.wait_for(selection_of("clicked")));
}

TEST_F(ClipboardTest, AFreeSlotAsksForNothing) {
    const ClipboardOwner owner(display(), OwnerManners::text, "never");
    const support::XWindow focus = desk.view.input_focus();
    testing::internal::CaptureStdout();
    clipboard_request_paste(desk.engine, 200);
    desk.settle(id, &log);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), ""); // where a trapped error would stand
    EXPECT_EQ(desk.view.input_focus(), focus);
    EXPECT_EQ(owner.requests(), 0);
}

TEST_F(ClipboardTest, XclipAnswersWithTextOfTheKindThatIsAskedFor) {
    support::ChildProcess xclip(owner_program(
        display(), "sh -c 'printf from-xclip | xclip -selection clipboard -target STRING -quiet'"));
    ASSERT_TRUE(support::wait_until([&] {
        clipboard_request_paste(desk.engine, id);
        return log.has(selection_of("from-xclip"));
    }));
}

TEST_F(ClipboardTest, XclipsUtf8AnswerCountsAsNone) {
    support::ChildProcess xclip(
        owner_program(display(), "sh -c 'printf utf8 | xclip -selection clipboard -quiet'"));
    ASSERT_TRUE(support::wait_until([&] {
        clipboard_request_paste(desk.engine, id);
        return log.has(no_selection());
    }));
    EXPECT_EQ(log.count("selection ["), 0);
}

TEST_F(ClipboardTest, XselAnswers) {
    support::ChildProcess xsel(
        owner_program(display(), "sh -c 'printf from-xsel | xsel --clipboard --input --nodetach'"));
    ASSERT_TRUE(support::wait_until([&] {
        clipboard_request_paste(desk.engine, id);
        return log.has(selection_of("from-xsel"));
    }));
}

TEST_F(ClipboardTest, XclipSendsLargeTextInPiecesAndItCountsAsNone) {
    support::ChildProcess xclip(owner_program(
        display(),
        "sh -c 'head -c 20000000 /dev/zero | tr \"\\0\" x | xclip -selection clipboard -quiet'"));
    ASSERT_TRUE(support::wait_until([&] {
        clipboard_request_paste(desk.engine, id);
        desk.settle(id, &log);
        return log.has(no_selection());
    }));
    EXPECT_EQ(log.count("selection ["), 0);
}

} // namespace
