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
        QTest::newRow("ETX") << QByteArray(
                                    "\x02"
                                    "1PR00000064\x03")
                             << L{"1PR00000064"} << QByteArray();
        QTest::newRow("EOT") << QByteArray(
                                    "\x02"
                                    "1SO\x04")
                             << L{"1SO"} << QByteArray();
        QTest::newRow("garbage before STX") << QByteArray(
                                                   "xy\x02"
                                                   "1SO\x03")
                                            << L{"1SO"} << QByteArray();
        QTest::newRow("STX in the middle restarts") << QByteArray(
                                                           "\x02"
                                                           "1PR00\x02"
                                                           "1ma0\x03")
                                                    << L{"1ma0"} << QByteArray();
        QTest::newRow("two replies") << QByteArray(
                                            "\x02"
                                            "1SO\x03\x02"
                                            "1ma1\x04")
                                     << L{"1SO", "1ma1"} << QByteArray();
        QTest::newRow("partial stays") << QByteArray(
                                              "\x02"
                                              "1wd12")
                                       << L{} << QByteArray("1wd12");
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
        auto outcome = assembly::feedChunk(buffer, QByteArray("\x02"
                                                              "1P"));
        QVERIFY(!outcome.reply);
        // The partial reply keeps its STX: the code stands at 0-based offset 2.
        QCOMPARE(buffer, QByteArray("\x02"
                                    "1P"));
        outcome = assembly::feedChunk(buffer, QByteArray("R0000"));
        QVERIFY(!outcome.reply);
        outcome = assembly::feedChunk(buffer, QByteArray("0064\x03"
                                                         "trailing\x02"
                                                         "1SO\x03"));
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
        outcome = assembly::feedChunk(buffer, QByteArray("\x02"
                                                         "1SO\x04"));
        QCOMPARE(outcome.reply.value_or(QByteArray()), QByteArray("1SO"));
    }

    void terminatorInEarlierChunkIsNotMissed() {
        // ETX arriving alone as its own chunk completes the reply.
        QByteArray buffer;
        QVERIFY(!assembly::feedChunk(buffer, QByteArray("\x02"
                                                        "1ma"))
                     .reply);
        QCOMPARE(assembly::feedChunk(buffer, QByteArray("\x03")).reply.value_or(QByteArray()),
                 QByteArray("1ma"));
    }
};

QTEST_APPLESS_MAIN(TestReplyAssembly)
#include "tst_replyassembly.moc"
