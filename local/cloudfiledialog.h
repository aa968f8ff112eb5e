// "selectFolderx": the suite's dialog for files on this machine and in the cloud.
#pragma once

#include "framework/call.h"

/// Shows the dialog with the call's options and answers with what was chosen. [GUI thread]
Reply askOnMachineOrInCloud(Call& call);
