// folder_reading.h: reading a folder on a thread of its own, since a file system may never answer.
//
// A mount whose server has gone keeps whoever asks it for anything waiting, perhaps for ever. So
// nobody who has a person to answer asks it: a reading does, and is waited for or left behind. One
// that is left behind ends by itself whenever it is answered, or with the process.
//
// A record belongs to whoever started it until it is taken or abandoned. Only the thread of the
// reading itself is behind the scenes; every function here is called by one thread at a time.
#pragma once

#include "gui/ORX/widgets/folder_listing.h"

#include <cstdint>

struct FolderReading;

// Makes `folder` the working directory (null leaves it; one that cannot be entered, too), then
// reads and sorts the working directory. The name is copied. Where no thread can be had, it reads
// before it returns. Null without memory.
[[nodiscard]] FolderReading* folder_reading_start(const char* folder);

// Whether it has come to its end; waits that long for it.
[[nodiscard]] bool folder_reading_is_done(const FolderReading* reading, std::int32_t patience_ms);

// Moves what an ended reading has found into the table, as folder_listing_read leaves it, and frees
// the record.
[[nodiscard]] bool folder_reading_take(FolderReading* reading, DirEntry* table,
                                       std::int32_t* visible);

// Lets go of a reading, ended or not. Null is ignored.
void folder_reading_abandon(FolderReading* reading);
