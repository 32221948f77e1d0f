#include <QTest>
int main(){}
