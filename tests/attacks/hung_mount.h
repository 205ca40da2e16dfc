// A mounted file system whose server never answers: whoever asks it for anything waits, perhaps for
// ever. In the entered world; needs /dev/fuse.

#pragma once

#include <string>

class HungMount {
public:
    // Makes the folder and mounts there. Throws std::runtime_error when the system refuses.
    explicit HungMount(std::string folder);
    // Lets everybody who waits go, and unmounts.
    ~HungMount();
    HungMount(const HungMount&) = delete;
    HungMount& operator=(const HungMount&) = delete;

    [[nodiscard]] const std::string& folder() const { return folder_; }

private:
    std::string folder_;
    int server_ = -1;
};
