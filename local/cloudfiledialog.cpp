#include "local/cloudfiledialog.h"

#include "local/filedialogs.h"
#include "suite/kcloudfiledialog.h"

namespace jsapi {

namespace {

struct Destroyer {
    void operator()(IKCloudFileDialog* dialog) const { dialog->Destroy(); }
};

} // namespace

Answer<CloudFileChoice> chooseOnMachineOrInCloud(
    const JSContextEnv& page, const CloudFileDialogOptions& options)
{
    const std::unique_ptr<IKCloudFileDialog, Destroyer> dialog(CreateCloudFileDialog(options.isOpenDialog));
    if (!dialog)
        return NoInputBox;
    forEachField<CloudFileDialogOptions>([&](const auto& field, std::size_t) {
        if (field.key)
            dialog->SetOption(heapString(field.key), toVariant(options.*field.member));
        return true;
    });
    CloudFileChoice choice;
    const DialogTurn turn(page);
    if (!turn || !dialog->Exec(turn.owner()))
        return choice;
    choice.files = dialog->Files();
    forEachField<CloudFileChoice>([&](const auto& field, std::size_t) {
        auto& value = choice.*field.member;
        if constexpr (std::is_assignable_v<decltype(value), QVariant>)
            value = dialog->Value(heapString(field.key));
        return true;
    });
    return choice;
}

} // namespace jsapi
