const { Payment } = NovaExtension;

const { status, item } = await Payment.open({ source: "notes" }); // resolves when the user has closed the page
console.log(status === "purchased" ? `Thank you for ${item}` : "Another time");
