const { Account } = NovaExtension;

const greet = () => console.log(Account.isLoggedIn().data ? `Hello ${Account.getUserInfo().data.nickName}` : "Hello");
Account.addLoginListener(greet);
Account.addLogoutListener(greet);
greet();
