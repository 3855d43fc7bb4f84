#pragma once

#include "src/opdialog.h"
#include "support/optionswindow.h"
#include "support/sandbox.h"

#include <QObject>

#include <memory>

/// A dialog as it is constructed from the settings file, on the screen.
struct ShownOptions
{
    OpDialog dialog;
    OptionsWindow window{dialog};
};

/// What tests of the options dialog begin with: folders of their own without a settings file.
class OpDialogTest : public QObject
{
    Q_OBJECT

protected slots:
    virtual void init() { m_sandbox = std::make_unique<Sandbox>(); }
    virtual void cleanup() { m_sandbox.reset(); }

protected:
    std::unique_ptr<Sandbox> m_sandbox;
};

/// The same with the dialog, as it is without a settings file, on the screen.
class ShownOpDialogTest : public OpDialogTest
{
    Q_OBJECT

protected slots:
    void init() override;
    void cleanup() override;

protected:
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_window->find<Widget>(name);
    }

    std::unique_ptr<OpDialog> m_dialog;
    std::unique_ptr<OptionsWindow> m_window;
};

/// The rows of the list, and the pages that they show.
enum Page {
    imagePage,
    fontsPage,
    securityPage,
    descriptionPage,
    pageCount,
};
