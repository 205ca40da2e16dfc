// test_folder.h: a folder of a test's own, with whatever entries the test wants in it.
#pragma once

#include <string>

// Made under the temporary folder and removed with all that is in it. What cannot be made ends
// the test program with a message.
class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string path_of(const std::string& name) const { return path_ + "/" + name; }

    void add_file(const std::string& name) const;
    void add_files(int count, const std::string& prefix) const; // prefix0, prefix1, ...
    void add_folder(const std::string& name) const;
    void add_link(const std::string& name, const std::string& target) const;
    void add_pipe(const std::string& name) const;
    void add_socket(const std::string& name) const;

private:
    std::string path_;
};

// The working directory, brought back at the end: it belongs to the whole process.
class WorkingDirectory {
public:
    WorkingDirectory();
    ~WorkingDirectory();
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

    void enter(const std::string& path) const;
    [[nodiscard]] static std::string now(); // empty when it has no path

private:
    int saved_;
};
