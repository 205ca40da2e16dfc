// Plays a sudo or su that cannot be installed here, from a file of settings beside it.
//
// The file is named as the program with ".play" behind it and holds NAME=VALUE lines, in which \n,
// \r, \b and \e mean what they mean in C:
//   password=TEXT       the right one
//   lecture=TEXT        said first, after lecture_ms milliseconds
//   wait=MS             between lecture and prompt: a slow module
//   wait_again=MS       before it asks again
//   prompt=TEXT         second_prompt=TEXT if it is another one the second time
//   hide=before|after|never   echo is switched off before the prompt, after it, or not at all;
//                       hide_ms=MS passes between a prompt and its hiding after it
//   read=MS             before it reads what is typed: a busy machine
//   prompt_ms=MS        before the prompt, when what is typed may already be hidden
//   stars=1             asterisks for what is typed, and their removal
//   newline=0           no line feed after the password
//   judge=MS            how long the right or wrong password is thought about
//   tries=N             how often it asks
//   complaint=TEXT      farewell=TEXT after the last complaint
//   after=TEXT          said after a right password, before the command runs
//   die=SIGNAL          ends itself by that signal after a right password
//   deaf=1              does not care when it is hung up on
//   probe=ask           also asks when it is to run a command as another user
//   stay=MS             goes on for that long after its command
//   forget=MS           how long -k takes, which does nothing else
// It runs the command as whoever calls it.

#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace {

std::map<std::string, std::string> settings;

std::string unescaped(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            const char c = text[++i];
            plain += c == 'n' ? '\n' : c == 'r' ? '\r' : c == 'b' ? '\b' : c == 'e' ? '\x1b' : c;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

std::string value(const std::string& name, const std::string& otherwise = "") {
    const auto found = settings.find(name);
    return found == settings.end() ? otherwise : found->second;
}

void pause(const std::string& name) {
    const long ms = std::stol(value(name, "0"));
    timespec left{ms / 1000, ms % 1000 * 1'000'000L};
    while (nanosleep(&left, &left) != 0) {
    }
}

void say(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const ssize_t count = write(STDERR_FILENO, text.data() + at, text.size() - at);
        if (count <= 0) {
            return;
        }
        at += static_cast<std::size_t>(count);
    }
}

void set_echo(bool on) {
    termios terminal{};
    tcgetattr(STDIN_FILENO, &terminal);
    terminal.c_lflag =
        on ? terminal.c_lflag | ECHO : terminal.c_lflag & ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &terminal);
}

// Ends the process when nobody is there any more, unless deaf.
std::string read_line() {
    std::string line;
    for (char c = 0; c != '\n';) {
        if (read(STDIN_FILENO, &c, 1) != 1) {
            while (value("deaf") == "1") {
                sleep(1);
            }
            std::exit(1);
        }
        line += c;
    }
    return line.substr(0, line.find_first_of(std::string("\0\n", 2)));
}

bool ask(bool again) {
    const bool hides = value("hide", "before") != "never";
    if (value("hide", "before") == "before") {
        set_echo(false);
    }
    pause("prompt_ms");
    say(again && settings.contains("second_prompt") ? value("second_prompt") : value("prompt"));
    if (value("hide", "before") == "after") {
        pause("hide_ms");
        set_echo(false);
    }
    pause("read");
    const std::string line = read_line();
    if (value("stars") == "1") {
        say(std::string(line.size(), '*') + std::string(line.size(), '\b') + "\x1b[0K");
    }
    if (hides) {
        set_echo(true);
    }
    if (value("newline", "1") == "1") {
        say("\n");
    }
    pause("judge");
    return line == value("password");
}

int run(const std::vector<std::string>& command) {
    if (settings.contains("die")) {
        kill(getpid(), std::stoi(value("die")));
    }
    say(value("after"));
    const pid_t child = fork();
    if (child == 0) {
        std::vector<char*> words;
        words.reserve(command.size() + 1);
        for (const std::string& word : command) {
            words.push_back(const_cast<char*>(word.c_str()));
        }
        words.push_back(nullptr);
        execvp(words[0], words.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    pause("stay");
    return WEXITSTATUS(status);
}

} // namespace

int main(int count, char** words) {
    const std::string program = *words;
    std::ifstream play(program + ".play");
    for (std::string line; std::getline(play, line);) {
        const auto sign = line.find('=');
        settings[line.substr(0, sign)] = unescaped(line.substr(sign + 1));
    }
    if (value("deaf") == "1") {
        static_cast<void>(std::signal(SIGHUP, SIG_IGN));
    }
    const std::string option = count > 1 ? words[1] : "";
    if (option == "-k") {
        pause("forget");
        return 0;
    }
    std::vector<std::string> command;
    if (option == "-c") { // su
        command = {"/bin/sh", "-c", count > 2 ? words[2] : ""};
    } else if (option == "-u") { // sudo -u USER COMMAND
        command.assign(words + 3, words + count);
    } else { // sudo -S -p PROMPT COMMAND
        command.assign(words + 4, words + count);
    }
    if (option == "-u" && value("probe") != "ask") {
        return run(command);
    }
    pause("lecture_ms");
    say(value("lecture"));
    pause("wait");
    const int tries = std::stoi(value("tries", "3"));
    for (int tried = 0; tried < tries; ++tried) {
        if (tried > 0) {
            pause("wait_again");
        }
        if (ask(tried > 0)) {
            return run(command);
        }
        say(value("complaint"));
    }
    say(value("farewell"));
    return 1;
}
