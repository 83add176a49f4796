#pragma once

#include "core/model/app_model.h"
#include "ui/widgets/live_count.h"
#include "ui/widgets/scan_panel_rules.h"

#include <QElapsedTimer>
#include <QObject>

namespace kestavon {

/// The storage scan's state as several screens show it: the state card, the placeholder of a screen
/// that needs a scan, and the strip that tells what could not be read. Main thread.
class ScanPanelState final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool scanning READ scanning NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(QString color READ color NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString count READ count NOTIFY changed)
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    Q_PROPERTY(QString foundSoFar READ foundSoFar NOTIFY changed)
    Q_PROPERTY(QString spokenText READ spokenText NOTIFY spokenTextChanged)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
public:
    ScanPanelState(AppModel& model, LiveCount& liveCount, QObject* parent = nullptr);

    bool scanning() const { return m_model.scanPhase().isScanning(); }
    const QString& symbol() const { return m_texts.symbol; }
    const QString& color() const { return m_texts.color; }
    const QString& title() const { return m_texts.title; }
    const QString& count() const { return m_texts.count; }
    const QString& detail() const { return m_texts.detail; }
    const QString& foundSoFar() const { return m_foundSoFar; }
    /// The card as one text for a screen reader; while the count runs it changes every 5 seconds at
    /// most, so that the reader can finish its sentence.
    const QString& spokenText() const { return m_spokenText; }
    /// What could not be read; empty when there is nothing to tell.
    const QString& notice() const { return m_notice; }

    Q_INVOKABLE void startScan() { m_model.startStorageScan(); }
    Q_INVOKABLE void stopScan() { m_model.stopStorageScan(); }

Q_SIGNALS:
    void changed();
    void spokenTextChanged();
    void noticeChanged();

private:
    void update();
    void speak();

    AppModel& m_model;
    LiveCount& m_liveCount;
    ScanPanelTexts m_texts;
    QString m_foundSoFar;
    QString m_spokenText;
    QString m_spokenTitle; ///< the phase that m_spokenText tells of
    QElapsedTimer m_sinceSpoken;
    QString m_notice;
};

} // namespace kestavon
