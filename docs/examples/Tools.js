const { Tools } = NovaExtension;

if (Tools.showConfirmDlg({ text: "Send it to Ada?", buttons: ["Send", "Keep"] }).data === 0)
    Tools.sendMail({ to: ["ada@example.com"], subject: "The sum", body: "2 + 2 = 4" }); // the user's mail program shows it
