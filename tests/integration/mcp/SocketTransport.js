import { ReadBuffer, serializeMessage } from "@modelcontextprotocol/sdk/shared/stdio.js";
import { once } from "node:events";
import { createConnection } from "node:net";

/** The SDK's transport over a Unix socket: messages are lines, as they are on standard input and output. */
export class SocketTransport {
  #path;
  #socket;
  #received = new ReadBuffer();

  constructor(path) {
    this.#path = path;
  }

  async start() {
    this.#socket = createConnection(this.#path);
    await once(this.#socket, "connect");
    this.#socket.on("error", (error) => this.onerror?.(error));
    this.#socket.on("close", () => this.onclose?.());
    this.#socket.on("data", (bytes) => this.#take(bytes));
  }

  #take(bytes) {
    try {
      this.#received.append(bytes);
      for (let message; (message = this.#received.readMessage()) !== null; ) this.onmessage?.(message);
    } catch (error) {
      this.onerror?.(error);
    }
  }

  send(message) {
    return new Promise((resolve, reject) => {
      this.#socket.write(serializeMessage(message), (error) => (error ? reject(error) : resolve()));
    });
  }

  async close() {
    if (this.#socket.destroyed) return;
    const closed = once(this.#socket, "close");
    this.#socket.destroy();
    await closed;
  }
}
