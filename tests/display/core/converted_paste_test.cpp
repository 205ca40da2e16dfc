// Pasting as today's programs do: any text, in pieces too, in the encoding of the locale.

#include "display/core/clipboard_owner.h"
#include "display/core/engine_desk.h"

#include "gui/ORX/core/clipboard.h"
#include "gui/ORX/core/engine_locks.h"
#include "gui/ORX/core/window_table.h"
#include "support/child_process.h"

#include <clocale>
#include <fstream>

namespace {

struct ConvertedPaste : testing::Test {
    CallLog log;
    EngineDesk desk;
    WindowId id = desk.show_window(&log);

    ConvertedPaste() {
        EXPECT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
        engine_set_converted_paste(desk.engine, true);
    }
    ~ConvertedPaste() override { std::setlocale(LC_ALL, "C"); }

    const std::string& display() const { return desk.server.display_name(); }
    std::string selection_of(const std::string& text) const {
        return "selection [" + text + "] " + std::to_string(id);
    }
    std::string no_selection() const { return "selection - " + std::to_string(id); }
    bool under_way() const {
        const XLockGuard guard(desk.engine);
        return desk.engine->paste.window != 0;
    }
    long event_mask() const {
        const XLockGuard guard(desk.engine);
        XWindowAttributes attributes{};
        XGetWindowAttributes(engine_display(desk.engine), desk.x_window(id), &attributes);
        return attributes.your_event_mask;
    }
};

TEST_F(ConvertedPaste, TakesUtf8First) {
    const ClipboardOwner owner(display(), OwnerManners::utf8_only, "grün € â");
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(selection_of("grün € â")));
    EXPECT_EQ(owner.requests(), 1);
}

TEST_F(ConvertedPaste, TakesLatin1WhereThereIsNoUtf8) {
    const ClipboardOwner owner(display(), OwnerManners::text, "gr\xFCn");
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(selection_of("grün")));
    EXPECT_EQ(owner.requests(), 2);
}

TEST_F(ConvertedPaste, TakesUtf8UnderTheOlderName) {
    const ClipboardOwner owner(display(), OwnerManners::text, "grün");
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(selection_of("grün")));
}

TEST_F(ConvertedPaste, PutsPiecesTogether) {
    const long mask = event_mask();
    std::string text(250'000, 'x');
    text.front() = 'a';
    text.back() = 'z';
    const ClipboardOwner owner(display(), OwnerManners::pieces, text);
    clipboard_request_paste(desk.engine, id);
    ASSERT_TRUE(log.wait_for_count("selection", 1));
    EXPECT_TRUE(log.has(selection_of(text)));
    EXPECT_FALSE(under_way());
    EXPECT_EQ(event_mask(), mask);
}

TEST_F(ConvertedPaste, EndsPiecesThatDoNot) {
    const ClipboardOwner owner(display(), OwnerManners::for_ever, std::string(90'000, 'x'));
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(no_selection()));
    EXPECT_FALSE(under_way());
}

TEST_F(ConvertedPaste, GivesUpAnOwnerThatDoesNotGoOn) {
    const ClipboardOwner owner(display(), OwnerManners::in_pieces);
    clipboard_request_paste(desk.engine, id);
    ASSERT_TRUE(support::wait_until([&] { return owner.requests() == 1; }));
    EXPECT_TRUE(support::wait_until([&] { return !under_way(); }, std::chrono::seconds(20)));
    EXPECT_EQ(log.count("selection"), 0);
    const ClipboardOwner next(display(), OwnerManners::text, "next");
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(selection_of("next")));
}

TEST_F(ConvertedPaste, ARefusalOfBothGivesNoText) {
    const ClipboardOwner owner(display(), OwnerManners::refuses);
    clipboard_request_paste(desk.engine, id);
    EXPECT_TRUE(log.wait_for(no_selection()));
    EXPECT_EQ(owner.requests(), 2);
}

TEST_F(ConvertedPaste, AnAnswerThatNobodyAskedForIsNone) {
    events::Sender{desk.view, desk.x_window(id)}.selection(1);
    desk.settle(id, &log);
    EXPECT_EQ(log.count("selection"), 0);
}

TEST_F(ConvertedPaste, TakesWhatXclipAndXselGive) {
    const std::string file = testing::TempDir() + "pasted-" + std::to_string(getpid());
    std::ofstream(file) << "grün € â";
    for (const char* command : {"xclip -selection clipboard -quiet -i ", "xsel -b -n -i < "}) {
        support::ChildOptions options;
        options.command = {"/bin/sh", "-c",
                           "LC_ALL=C.UTF-8 DISPLAY=" + display() + " exec " + command + file};
        support::ChildProcess owner(options);
        log.clear();
        // Again and again: the program may not be the owner yet.
        EXPECT_TRUE(support::wait_until([&] {
            clipboard_request_paste(desk.engine, id);
            return support::wait_until([&] { return log.has(selection_of("grün € â")); },
                                       std::chrono::milliseconds(300));
        })) << command
            << log.text();
    }
    std::remove(file.c_str());
}

} // namespace
