// The address says what is for sale, and to whom. The suite sees where the page goes to, and ends it: it stays at no other
// address.
"use strict";
const sale = new URLSearchParams(location.search);
const byId = (id) => document.getElementById(id);

byId("buyer").textContent = sale.get("buyer");
for (const item of sale.getAll("item")) {
    const choice = document.createElement("input");
    Object.assign(choice, { type: "radio", name: "choice", required: true, value: item, checked: item === sale.get("first") });
    const label = document.createElement("label");
    label.append(choice, ` ${item}`);
    byId("items").append(label);
}
byId("buy").disabled = !sale.has("item");
byId("sale").addEventListener("submit", (event) => {
    event.preventDefault();
    location.assign(`bought?${encodeURIComponent(byId("sale").elements.choice.value)}`);
});
byId("cancel").addEventListener("click", () => location.assign("cancelled"));
document.addEventListener("keydown", ({ key }) => key === "Escape" && location.assign("cancelled"));
(document.querySelector(":checked") ?? byId("cancel")).focus();
