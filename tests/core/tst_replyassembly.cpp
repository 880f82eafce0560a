#include "core/link/ReplyAssembly.h"

#include <QtTest>

using namespace velora;

namespace {

// Feeds bytes one at a time as the RS-232C port delivers them.
QList<QByteArray> feedSerial(QByteArray& buffer, const QByteArray& bytes) {
    QList<QByteArray> replies;
    for (const char c : bytes) {
        if (auto reply = assembly::feedCharacter(buffer, c))
            replies.append(*reply);
    }
    return replies;
}

}  // namespace

class TestReplyAssembly : public QObject {
    Q_OBJECT
private slots:
    void serial_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QList<QByteArray>>("replies");
        QTest::addColumn<QByteArray>("leftOver");
        using L = QList<QByteArray>;
        // Octal escapes: STX \002, ETX \003, EOT \004.
        QTest::newRow("ETX") << QByteArray("\0021PR00000064\003") << L{"1PR00000064"}
                             << QByteArray();
        QTest::newRow("EOT") << QByteArray("\0021SO\004") << L{"1SO"} << QByteArray();
        QTest::newRow("garbage before STX")
            << QByteArray("xy\0021SO\003") << L{"1SO"} << QByteArray();
        QTest::newRow("STX in the middle restarts")
            << QByteArray("\0021PR00\0021ma0\003") << L{"1ma0"} << QByteArray();
        QTest::newRow("two replies")
            << QByteArray("\0021SO\003\0021ma1\004") << L{"1SO", "1ma1"} << QByteArray();
        QTest::newRow("partial stays") << QByteArray("\0021wd12") << L{} << QByteArray("1wd12");
    }
    void serial() {
        QFETCH(QByteArray, bytes);
        QFETCH(QList<QByteArray>, replies);
        QFETCH(QByteArray, leftOver);
        QByteArray buffer;
        QCOMPARE(feedSerial(buffer, bytes), replies);
        QCOMPARE(buffer, leftOver);
    }

    // The USB back-end hands over whole chunks; the partial reply keeps its STX.
    void chunks_data() {
        QTest::addColumn<QList<QByteArray>>("chunks");
        QTest::addColumn<QList<QByteArray>>("replies");
        QTest::addColumn<QByteArray>("leftOver");
        using L = QList<QByteArray>;
        QTest::newRow("across reads, rest dropped")
            << L{"\0021P", "R0000", "0064\003trailing\0021SO\003"} << L{"1PR00000064"}
            << QByteArray();
        QTest::newRow("partial stays") << L{"\0021P"} << L{} << QByteArray("\0021P");
        QTest::newRow("no STX: dropped, the next is read")
            << L{"1SO\003", "\0021SO\004"} << L{"1SO"} << QByteArray();
        // An ETX alone in its chunk still ends the reply: the search starts at the new bytes.
        QTest::newRow("ETX alone") << L{"\0021ma", "\003"} << L{"1ma"} << QByteArray();
    }
    void chunks() {
        QFETCH(QList<QByteArray>, chunks);
        QFETCH(QList<QByteArray>, replies);
        QFETCH(QByteArray, leftOver);
        QByteArray buffer;
        QList<QByteArray> got;
        for (const QByteArray& chunk : chunks) {
            if (auto reply = assembly::feedChunk(buffer, chunk).reply)
                got.append(*reply);
        }
        QCOMPARE(got, replies);
        QCOMPARE(buffer, leftOver);
    }
};

QTEST_APPLESS_MAIN(TestReplyAssembly)
#include "tst_replyassembly.moc"
