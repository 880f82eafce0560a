#include "link/ReplyAssembly.h"

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

    void chunksAssembleAcrossReads() {
        QByteArray buffer;
        auto outcome = assembly::feedChunk(buffer, QByteArray("\0021P"));
        QVERIFY(!outcome.reply);
        // The partial reply keeps its STX: the code stands at 0-based offset 2.
        QCOMPARE(buffer, QByteArray("\0021P"));
        outcome = assembly::feedChunk(buffer, QByteArray("R0000"));
        QVERIFY(!outcome.reply);
        outcome = assembly::feedChunk(buffer, QByteArray("0064\003trailing\0021SO\x03"));
        QCOMPARE(outcome.reply.value_or(QByteArray()), QByteArray("1PR00000064"));
        QVERIFY(outcome.dropsRest);
        QVERIFY(buffer.isEmpty());
    }

    void chunkWithoutStxIsDropped() {
        QByteArray buffer;
        auto outcome = assembly::feedChunk(buffer, QByteArray("1SO\x03"));
        QVERIFY(!outcome.reply);
        QVERIFY(buffer.isEmpty());
        // The next well-formed reply is still assembled.
        outcome = assembly::feedChunk(buffer, QByteArray("\0021SO\x04"));
        QCOMPARE(outcome.reply.value_or(QByteArray()), QByteArray("1SO"));
    }

    void terminatorInEarlierChunkIsNotMissed() {
        // ETX arriving alone as its own chunk completes the reply.
        QByteArray buffer;
        QVERIFY(!assembly::feedChunk(buffer, QByteArray("\0021ma")).reply);
        QCOMPARE(assembly::feedChunk(buffer, QByteArray("\x03")).reply.value_or(QByteArray()),
                 QByteArray("1ma"));
    }
};

QTEST_APPLESS_MAIN(TestReplyAssembly)
#include "tst_replyassembly.moc"
