#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velora {

// Reads the lines of one of the program's text files (.prm, .tbl, .sct, .csv) with bounds, so
// that a huge, endless or binary file costs no more than a good one: the whole file is read at
// once up to a size limit, and a line longer than the limit ends the reading. Line ends may be
// CR LF (as the program writes), LF or CR alone; a UTF-8 byte-order mark is skipped. Text in
// UTF-16 is not converted: its first line then fails the caller's identification check.
class BoundedLineReader {
public:
    // Far above the largest file the program writes (a wave file is about 10 KB).
    static constexpr qint64 DefaultMaxFileBytes = 1024 * 1024;
    // Every line the program writes is a number or an identification of under 64 characters.
    static constexpr int DefaultMaxLineLength = 64;

    enum class OpenResult {
        Ok,
        CannotOpen,  // missing, unreadable or a directory
        TooLarge,    // over the size limit: not one of the program's files
    };

    explicit BoundedLineReader(int maxLineLength = DefaultMaxLineLength,
                               qint64 maxFileBytes = DefaultMaxFileBytes);

    [[nodiscard]] OpenResult open(const QString& path);
    // The next line without its line end; nothing at the end of the file or when the line is
    // longer than the limit (the reader then stays at its end).
    [[nodiscard]] std::optional<QByteArray> next();
    [[nodiscard]] bool atEnd() const { return pos_ >= data_.size(); }
    // The reading ended at a line longer than the limit.
    [[nodiscard]] bool lineTooLong() const { return lineTooLong_; }
    // Lines handed out so far.
    [[nodiscard]] int lineCount() const { return lines_; }
    void close();

private:
    const int maxLineLength_;
    const qint64 maxFileBytes_;
    QByteArray data_;
    qsizetype pos_ = 0;
    int lines_ = 0;
    bool lineTooLong_ = false;
};

}  // namespace velora
