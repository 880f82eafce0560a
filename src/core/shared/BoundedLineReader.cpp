#include "core/shared/BoundedLineReader.h"

#include <QFile>
#include <QFileInfo>

namespace velora {

BoundedLineReader::BoundedLineReader(int maxLineLength, qint64 maxFileBytes)
    : maxLineLength_(maxLineLength), maxFileBytes_(maxFileBytes) {
}

BoundedLineReader::OpenResult BoundedLineReader::open(const QString& path) {
    close();
    if (QFileInfo(path).isDir())
        return OpenResult::CannotOpen;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return OpenResult::CannotOpen;
    // One byte past the limit tells a file that is too large, also for devices and pipes
    // whose size is unknown.
    data_ = file.read(maxFileBytes_ + 1);
    if (data_.size() > maxFileBytes_) {
        close();
        return OpenResult::TooLarge;
    }
    if (data_.startsWith("\xEF\xBB\xBF"))
        pos_ = 3;
    return OpenResult::Ok;
}

std::optional<QByteArray> BoundedLineReader::next() {
    if (atEnd())
        return std::nullopt;
    qsizetype end = pos_;
    while (end < data_.size() && data_[end] != '\r' && data_[end] != '\n')
        ++end;
    if (end - pos_ > maxLineLength_) {
        pos_ = data_.size();
        lineTooLong_ = true;
        return std::nullopt;
    }
    QByteArray line = data_.mid(pos_, end - pos_);
    if (end < data_.size() && data_[end] == '\r')
        ++end;
    if (end < data_.size() && data_[end] == '\n')
        ++end;
    pos_ = end;
    ++lines_;
    return line;
}

void BoundedLineReader::close() {
    data_.clear();
    pos_ = 0;
    lines_ = 0;
    lineTooLong_ = false;
}

}  // namespace velora
