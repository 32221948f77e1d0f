#include "support/SurfaceRig.h"
class BlocksTest : public QObject { Q_OBJECT };
QTEST_MAIN(BlocksTest)
#include "BlocksTest.moc"
