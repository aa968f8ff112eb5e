const { Event } = NovaExtension;

Event.addEventListener("notes.changed", (name) => console.log(`${name} has changed`)); // also in other pages
Event.dispatchEvent("notes.changed", false, "letter");
