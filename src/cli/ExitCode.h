#pragma once

namespace velora::cli {

// What velora-cli tells the script that ran it; listed in --help.
enum class ExitCode {
    Ok = 0,
    Differences = 1,   // params diff: the drive and the file differ
    Usage = 2,         // the command line itself is wrong
    LinkFailure = 3,   // port cannot be opened, no reply, broken reply
    DriveRefusal = 4,  // the drive answered with an error reply
    FileError = 5,     // a file cannot be read, is not the right kind, or cannot be written
};

[[nodiscard]] constexpr int toInt(ExitCode code) {
    return static_cast<int>(code);
}

}  // namespace velora::cli
