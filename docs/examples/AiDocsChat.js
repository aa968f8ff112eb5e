const { AiDocsChat } = NovaExtension;

AiDocsChat.registerQACallback(({ type, sentences }) => console.log(type, sentences)); // with each answer
AiDocsChat.qaNotify({ type: "question", text: "When does the contract end?" });
