#pragma once

#include <QObject>

namespace batch {

/// SIGINT and SIGTERM as events of the loop. One that was ignored when the program started stays
/// so.
class EndSignals : public QObject
{
    Q_OBJECT

public:
    explicit EndSignals(QObject *parent = nullptr);
    ~EndSignals() override;
    Q_DISABLE_COPY_MOVE(EndSignals)

    /// The signal that came first, known at once and not only when the loop hears of it; 0: none.
    static int first();

signals:
    void came();

private:
    void read();
};

} // namespace batch
