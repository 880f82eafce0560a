#include "gui/wave/WaveScope.h"

#include "core/shared/Global.h"
#include "core/shared/TextCatalogue.h"
#include "core/wave/WaveReadout.h"
#include "core/wave/WaveScale.h"
#include "gui/wave/MarkerStrip.h"
#include "gui/wave/WaveTrace.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>

namespace velora {

namespace {

QString indexed(const char* name, int i) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(i);
}

}  // namespace

WaveScope::WaveScope(const Global& global, QWidget* parent) : QWidget(parent), global_(global) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(2);
    LblCursor1 = new MarkerStrip(Qt::Horizontal, QStringLiteral("LblCursor1"),
                                 QStringLiteral("LblTrgView"), this);
    grid->addWidget(LblCursor1, 0, 0);
    for (int i = 0; i < 3; ++i) {
        WaveTrace* picture = new WaveTrace(global_.Wave, i, this);
        Picture1[static_cast<std::size_t>(i)] = picture;
        grid->addWidget(picture, i + 1, 0);
        connect(picture, &WaveTrace::cursorPlaced, this, &WaveScope::setCursor);
        connect(picture, &WaveTrace::hovered, this, &WaveScope::showHover);
    }
    for (int c = 0; c < 2; ++c) {
        const auto k = static_cast<std::size_t>(c);
        LblCursor2[k] =
            new MarkerStrip(Qt::Vertical, indexed("LblCursor2", c), indexed("LblZero", c), this);
        grid->addWidget(LblCursor2[k], c + 1, 1);
        // The focus display: the strip shows while its picture has the keyboard.
        connect(Picture1[k], &WaveTrace::focusChanged, LblCursor2[k], &MarkerStrip::setOpaque);
    }
    // The logic picture is a third of an analogue one high, as on the drive's own display.
    grid->setRowStretch(1, 3);
    grid->setRowStretch(2, 3);
    grid->setRowStretch(3, 1);
    LblCursorReadout = new QLabel(this);
    LblCursorReadout->setObjectName(QStringLiteral("LblCursorReadout"));
    LblCursorReadout->setTextFormat(Qt::RichText);
    // Room for both cursors and their difference, so the traces do not jump as they are placed.
    LblCursorReadout->setMinimumHeight(3 * (fontMetrics().lineSpacing() + 4));
    LblCursorReadout->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    LblHover = new QLabel(this);
    LblHover->setObjectName(QStringLiteral("LblHover"));
    grid->addWidget(LblCursorReadout, 4, 0, 1, 2);
    grid->addWidget(LblHover, 5, 0, 1, 2);
    // Takes the keyboard for the trigger marker; it is never seen.
    TxtDummy1 = new QLineEdit(this);
    TxtDummy1->setObjectName(QStringLiteral("TxtDummy1"));
    TxtDummy1->setReadOnly(true);
    TxtDummy1->setFixedSize(1, 1);
    TxtDummy1->setFrame(false);
    grid->addWidget(TxtDummy1, 0, 1);
}

void WaveScope::LanguageSelect(Language languageId) {
    const auto text = [languageId](Text id) { return TextCatalogue::text(languageId, id); };
    const std::array<Text, 3> pictureTips{Text::WaveVelocityMonitor, Text::WaveTorqueCommandMonitor,
                                          Text::WaveLogicSignalMonitor};
    for (std::size_t i = 0; i < Picture1.size(); ++i) {
        Picture1[i]->setToolTip(text(pictureTips[i]) + QLatin1Char('\n') +
                                text(Text::ScopeLeftClickPlacesCursor));
        Picture1[i]->setAccessibleName(text(pictureTips[i]));
    }
    LblCursor1->setToolTip(text(Text::WaveTriggerPosition));
    LblCursor1->setAccessibleName(text(Text::WaveTriggerPosition));
    TxtDummy1->setAccessibleName(text(Text::WaveTriggerPosition));
    for (int c = 0; c < 2; ++c) {
        LblCursor2[static_cast<std::size_t>(c)]->setToolTip(
            TextCatalogue::text(languageId, Text::WaveZeroVelocity, c));
        LblCursor2[static_cast<std::size_t>(c)]->setAccessibleName(
            TextCatalogue::text(languageId, Text::WaveZeroVelocity, c));
    }
    LblHover->clear();  // its next text comes in the new language
    updateReadout();
}

void WaveScope::showTrigger(int triggerPosition) {
    LblCursor1->setFraction(triggerPosition / 256.0);
    for (WaveTrace* picture : Picture1)
        picture->setTriggerPosition(triggerPosition);
}

void WaveScope::showZero(int channel, int level) {
    LblCursor2[static_cast<std::size_t>(channel)]->setFraction((100 - level) / 100.0);
}

void WaveScope::redraw() {
    const WaveStore& store = global_.Wave;
    const WaveMonSettings& w = global_.WaveMon;
    Picture1[0]->setScale(wave::fullScale(0, w.VelScale), store.ZeroLevel[0]);
    Picture1[1]->setScale(wave::fullScale(1, w.TqScale), store.ZeroLevel[1]);
    for (WaveTrace* picture : Picture1)
        picture->setShowPrevious(w.Wave == 0);
    updateReadout();
}

void WaveScope::setCursor(int cursor, int sample) {
    cursors_[static_cast<std::size_t>(cursor)] = sample;
    for (WaveTrace* picture : Picture1)
        picture->setCursors(cursors_);
    updateReadout();
}

void WaveScope::updateReadout() {
    LblCursorReadout->setText(wave::cursorTable(global_.Wave, cursors_, global_.WaveMon.TimeScale,
                                                global_.Link.LanguageId));
}

void WaveScope::showHover(int sample) {
    for (WaveTrace* picture : Picture1)
        picture->setHover(sample);
    if (sample < 0) {
        LblHover->clear();
        return;
    }
    const wave::Reading reading = wave::readingAt(global_.Wave, sample, global_.WaveMon.TimeScale);
    LblHover->setText(TextCatalogue::text(global_.Link.LanguageId, Text::ScopePointer) +
                      QStringLiteral(":  ") + wave::formatReading(reading));
}

QImage WaveScope::composeImage(const QString& header) {
    // Drawn again at the pictures' present size, so the image shows what the user sees.
    const int width = Picture1[0]->width();
    // As high as the header needs at this width: every line whole, however it wraps.
    const QRect textArea(4, 2, width - 8, 1 << 16);
    const int headerHeight =
        fontMetrics().boundingRect(textArea, Qt::TextWordWrap, header).height() + 8;
    int height = headerHeight;
    for (const WaveTrace* picture : Picture1)
        height += picture->height() + 2;
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(12, 16, 20));
    QPainter p(&image);
    p.setPen(Qt::white);
    p.setFont(font());
    p.drawText(textArea, Qt::TextWordWrap, header);
    int y = headerHeight;
    for (WaveTrace* picture : Picture1) {
        p.drawPixmap(0, y, picture->grab());
        y += picture->height() + 2;
    }
    return image;
}

}  // namespace velora
