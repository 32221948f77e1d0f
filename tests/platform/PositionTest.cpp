#include "support/SurfaceRig.h"
class PositionTest : public QObject { Q_OBJECT };
QTEST_MAIN(PositionTest)
#include "PositionTest.moc"
