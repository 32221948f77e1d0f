#include "support/SurfaceRig.h"
class ListsTest : public QObject { Q_OBJECT };
QTEST_MAIN(ListsTest)
#include "ListsTest.moc"
