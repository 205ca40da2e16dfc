// folder_reading.cpp: the thread of a reading, and whose its record is.

#include "gui/ORX/widgets/folder_reading.h"

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>

namespace {

constexpr useconds_t pause_microseconds = 200;
constexpr std::int32_t pauses_of_a_millisecond = 5;

enum class Stage { under_way, done, abandoned };

} // namespace

struct FolderReading {
    std::atomic<Stage> stage{Stage::under_way};
    char* folder = nullptr; // owned
    bool readable = false;
    std::int32_t visible = 0;
    DirEntry entries[folder_listing_capacity] = {};
};

namespace {

void free_reading(FolderReading* reading) {
    folder_listing_clear(reading->entries);
    std::free(reading->folder);
    delete reading;
}

void read(FolderReading* reading) {
    if (reading->folder != nullptr) {
        // A folder that has gone, or is closed to the person, leaves the working directory where it
        // is; listing it afresh shows what is there now.
        [[maybe_unused]] const int result = chdir(reading->folder);
    }
    reading->readable = folder_listing_read(reading->entries, "./", &reading->visible);
    folder_listing_sort(reading->entries);
}

void* run(void* record) {
    auto* reading = static_cast<FolderReading*>(record);
    read(reading);
    if (reading->stage.exchange(Stage::done) == Stage::abandoned) {
        free_reading(reading);
    }
    return nullptr;
}

// Signals are for the threads that are sure to answer.
bool start_thread(FolderReading* reading) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t thread{};
    const bool started = pthread_create(&thread, &attributes, run, reading) == 0;
    pthread_attr_destroy(&attributes);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return started;
}

} // namespace

FolderReading* folder_reading_start(const char* folder) {
    auto* reading = new (std::nothrow) FolderReading;
    if (reading == nullptr) {
        return nullptr;
    }
    if (folder != nullptr) {
        reading->folder = strdup(folder);
        if (reading->folder == nullptr) {
            free_reading(reading);
            return nullptr;
        }
    }
    if (!start_thread(reading)) {
        read(reading);
        reading->stage = Stage::done;
    }
    return reading;
}

bool folder_reading_is_done(const FolderReading* reading, std::int32_t patience_ms) {
    for (std::int32_t i = 0; i < patience_ms * pauses_of_a_millisecond; ++i) {
        if (reading->stage == Stage::done) {
            return true;
        }
        usleep(pause_microseconds);
    }
    return reading->stage == Stage::done;
}

bool folder_reading_take(FolderReading* reading, DirEntry* table, std::int32_t* visible) {
    folder_listing_clear(table);
    std::copy(std::begin(reading->entries), std::end(reading->entries), table);
    std::fill(std::begin(reading->entries), std::end(reading->entries), DirEntry{});
    *visible = reading->visible;
    const bool readable = reading->readable;
    free_reading(reading);
    return readable;
}

void folder_reading_abandon(FolderReading* reading) {
    if (reading != nullptr && reading->stage.exchange(Stage::abandoned) == Stage::done) {
        free_reading(reading);
    }
}
