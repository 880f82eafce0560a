#include "cli/CliCommand.h"
#include "cli/CliSession.h"
#include "core/connect/PortSearch.h"
#include "core/link/ReplyFields.h"
#include "core/link/WireFormat.h"
#include "core/shared/TextCatalogue.h"

#include <QSet>
#include <QTimer>

#include <cmath>

namespace velora::cli {

namespace {

// Characters of the probe "nPR77" and of its reply "nPRxxxxxxxx", each with both frame bytes.
constexpr int ProbeCharacters = 7;
constexpr int ReplyCharacters = 13;
constexpr double BitsPerCharacter = 11.0;  // start, 8 data, parity, stop
constexpr int DefaultMarginMs = 50;

// Every axis at every rate the back-end offers, one identification probe each. Faster than the
// program's search in two ways the protocol allows: a silent axis is given up once its reply
// could have arrived (both frames on the line, plus a margin for the drive's reply wait and the
// PC) instead of after two polling ticks, and every axis is tried at one rate before the port
// is opened at the next, so the port is reopened once per rate. Unlike the search it does not
// stop at the first drive: every drive on the line is listed.
class Scan : public QObject {
public:
    Scan(CliSession& session, int marginMs) : session_(session), marginMs_(marginMs) {
        timer_.setSingleShot(true);
        connect(&timer_, &QTimer::timeout, this, &Scan::next);
    }

    ExitCode run() {
        // Read here, with the reply's own axis: a late answer of the axis before still counts,
        // at the rate the port is open at, though the link no longer takes it as an answer.
        connect(session_.engine().transport(), &Transport::replyReceived, this,
                [this](const QString& text) { onReply(text); });
        rateIndex_ = 0;
        axis_ = -1;
        if (!session_.reopenAt(PortSearch::rate(rateIndex_)))
            return ExitCode::LinkFailure;
        next();
        const ExitCode code = session_.exec();
        session_.endProgress();
        if (code != ExitCode::Ok)
            return code;
        if (found_.isEmpty()) {
            session_.fail(ExitCode::LinkFailure,
                          TextCatalogue::text(Language::English, Text::CliNoDriveAnsweredOn));
            return ExitCode::LinkFailure;
        }
        return ExitCode::Ok;
    }

private:
    [[nodiscard]] int baud() const { return PortSearch::rate(rateIndex_); }

    void next() {
        if (axis_ < PortSearch::LastAxis) {
            ++axis_;
        } else {
            axis_ = 0;
            if (rateIndex_ + 1 >= PortSearch::rateCount(session_.link().UsbMode)) {
                session_.finish();
                return;
            }
            ++rateIndex_;
            if (!session_.reopenAt(baud()))
                return;
        }
        session_.progress(QStringLiteral("scan: axis %1 at %2 baud").arg(axis_).arg(baud()));
        LinkState& s = session_.link();
        s.AxisNumber = axis_;
        session_.engine().SendCommand(wire::axisCharacter(axis_) + QStringLiteral("PR77"));
        const double lineMs =
            (ProbeCharacters + ReplyCharacters) * BitsPerCharacter * 1000 / baud();
        timer_.start(static_cast<int>(std::ceil(lineMs)) + marginMs_);
    }

    void onReply(const QString& text) {
        if (wire::codeOf(text) != QLatin1String("PR"))
            return;
        ReplyFields fields(text, ReplyFields::Missing::ReadAsZero);
        const QString field = fields.field(0, 8);
        bool ok = false;
        const int axis = QString(text.at(0)).toInt(&ok, 16);
        const int version = HexToLong(field);
        if (!ok || !fields.ok() || field.isEmpty() || axis > PortSearch::LastAxis ||
            found_.contains({axis, baud()}))
            return;
        found_.insert({axis, baud()});
        session_.endProgress();
        CliSession::out(QStringLiteral("axis %1, %2 baud, version %3")
                            .arg(axis)
                            .arg(baud())
                            .arg(QString::number(version / 100.0, 'f', 2)));
        if (axis == axis_) {
            // The probe is answered: on at once, outside the port's own receive handler since
            // the next rate reopens the port.
            timer_.stop();
            QTimer::singleShot(0, this, &Scan::next);
        }
    }

    CliSession& session_;
    const int marginMs_;
    QTimer timer_;
    int rateIndex_ = 0;
    int axis_ = -1;
    QSet<QPair<int, int>> found_;
};

}  // namespace

CliCommand scanCommand() {
    CliCommand c;
    c.words = QStringList{QStringLiteral("scan")};
    c.synopsis = QStringLiteral("scan [--wait MS]");
    c.summary = QStringLiteral(
        "Find every drive on the line: axes 0-14 at each baud rate, one line per drive with its "
        "version. A silent axis is given up after its reply time plus MS (default 50) ms; raise "
        "it for drives with a long reply wait (parameter 44).");
    c.options = {QCommandLineOption(
        QStringLiteral("wait"), QStringLiteral("Margin per probe in ms."), QStringLiteral("MS"))};
    c.run = [](CliSession& session, const CliArgs& args) {
        int margin = DefaultMarginMs;
        if (args.isSet(QStringLiteral("wait"))) {
            bool ok = false;
            margin = args.value(QStringLiteral("wait")).toInt(&ok);
            if (!ok || margin < 0 || margin > 5000) {
                session.fail(ExitCode::Usage,
                             QStringLiteral("--wait takes a number of milliseconds, 0-5000."));
                return ExitCode::Usage;
            }
        }
        if (const ExitCode opened = session.openLink(false); opened != ExitCode::Ok)
            return opened;
        Scan scan(session, margin);
        return scan.run();
    };
    return c;
}

}  // namespace velora::cli
