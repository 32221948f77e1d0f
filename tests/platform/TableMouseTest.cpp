#include "support/SurfaceRig.h"
class TableMouseTest : public QObject
{
    Q_OBJECT
};
QTEST_MAIN(TableMouseTest)
#include "TableMouseTest.moc"
