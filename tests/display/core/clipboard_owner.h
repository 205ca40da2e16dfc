// A clipboard owner with manners of its own choice, on a connection and a thread of its own.

#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

struct xcb_connection_t;

enum class OwnerManners {
    text,      // answers STRING with the text
    utf8_only, // refuses STRING, answers UTF8_STRING
    pieces,    // sends UTF8_STRING in pieces of 100,000 bytes
    for_ever,  // sends pieces without an end
    refuses,   // refuses everything
    in_pieces, // announces INCR and sends nothing more
    dies,      // breaks its connection when it is asked
};

class ClipboardOwner {
public:
    // Owns CLIPBOARD when the constructor returns.
    ClipboardOwner(const std::string& display_name, OwnerManners manners, std::string text = "");
    ~ClipboardOwner();
    ClipboardOwner(const ClipboardOwner&) = delete;
    ClipboardOwner& operator=(const ClipboardOwner&) = delete;

    // How often it was asked.
    [[nodiscard]] int requests() const { return requests_; }

private:
    void serve();
    void send_piece(std::uint32_t requestor, std::uint32_t property);

    std::size_t sent_ = 0; // of the text, in pieces
    std::uint32_t utf8_ = 0;

    xcb_connection_t* connection_;
    OwnerManners manners_;
    std::string text_;
    std::atomic<int> requests_{0};
    std::atomic<bool> stop_{false};
    std::thread thread_;
};
