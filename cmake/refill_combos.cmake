# The form compiler of Qt 6 adds empty items in setupUi and only names them in retranslateUi. The
# forms promise more: retranslateUi clears and refills each combo box, which puts it on index 0.
file(READ "${IN}" code)
string(REGEX REPLACE "\n[ ]*([A-Za-z0-9_]+)->addItem\\(QString\\(\\)\\);" "" code "${code}")
string(REGEX REPLACE
    "\n([ ]*)([A-Za-z0-9_]*[cC]ombo[A-Za-z0-9_]*)->setItemText\\(0, ([^\n]*)\\);"
    "\n\\1\\2->clear();\n\\1\\2->insertItems(0, QStringList()\n\\1    << \\3);" code "${code}")
# Each round draws one more item of every list into it.
set(before "")
while(NOT before STREQUAL code)
    set(before "${code}")
    string(REGEX REPLACE
        "(<< QCoreApplication[^\n]*\\))\\);\n([ ]*)[A-Za-z0-9_]*[cC]ombo[A-Za-z0-9_]*->setItemText\\([1-9][0-9]*, ([^\n]*)\\);"
        "\\1\n\\2    << \\3);" code "${code}")
endwhile()
file(WRITE "${OUT}" "${code}")
