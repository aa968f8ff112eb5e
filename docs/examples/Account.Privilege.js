const { Privilege } = NovaExtension.Account;

const show = () => console.log(Privilege.hasPrivilege("pdf.export").data ? "Export as PDF" : "Export as PDF (members only)");
Privilege.addEventListener("event.privilege.info.changed", show);
show();
