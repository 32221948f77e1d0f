#include "support/SurfaceRig.h"
class TableGridTest : public QObject
{
    Q_OBJECT
};
QTEST_MAIN(TableGridTest)
#include "TableGridTest.moc"
