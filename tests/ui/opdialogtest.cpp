#include "opdialogtest.h"

void ShownOpDialogTest::init()
{
    OpDialogTest::init();
    m_dialog = std::make_unique<OpDialog>();
    m_window = std::make_unique<OptionsWindow>(*m_dialog);
}

void ShownOpDialogTest::cleanup()
{
    m_window.reset();
    m_dialog.reset();
    OpDialogTest::cleanup();
}
