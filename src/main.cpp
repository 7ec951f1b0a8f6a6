#include "shell/uAppStart.h"
#include "shell/uMainDataModule.h"
#include "shell/uMainForm.h"

int main(int argc, char *argv[])
{
    TApplication application(argc, argv);
    TAppStart::Prepare();
    const TMainDataModule dataModule;
    int code = 0;
    {
        TMainForm mainForm;
        mainForm.show();
        code = QApplication::exec();
    }
    TAppStart::Finish();
    return code;
}
