// The page that the tests act on, served on loopback. What the page sends comes back here, so that effects are seen
// from outside of the browser.
import { EventEmitter, once } from "node:events";
import { createServer } from "node:http";

const form = `<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<title>Order form</title>
<form action="/order">
<input name="who">
<select name="greeting"><option>Hello<option>Good morning</select>
<input name="loud" type="checkbox" value="yes">
<textarea name="note"></textarea>
<button id="send">Send</button>
</form>
<button id="press" onclick="fetch('/pressed')">Press</button>
<p id="text">Some <b>bold</b> words and an <em>ü</em>.</p>
</html>`;

export class Page {
  #arrivals = new EventEmitter();
  #sent = [];
  #server = createServer((request, response) => {
    const { pathname, searchParams } = new URL(request.url, "http://page");
    response.setHeader("Content-Type", "text/html");
    response.end(pathname === "/" ? form : "");
    this.#sent.push({ path: pathname, fields: Object.fromEntries(searchParams) });
    this.#arrivals.emit(pathname);
  });

  /** A page that is served until the test ends. */
  static async serve(test) {
    const page = new Page();
    page.#server.listen(0, "127.0.0.1");
    await once(page.#server, "listening");
    test.after(() => {
      page.#server.close();
      page.#server.closeAllConnections();
    });
    return page;
  }

  get url() {
    return `http://127.0.0.1:${this.#server.address().port}/`;
  }

  /** The fields of every request to the path so far. */
  sentTo(path) {
    return this.#sent.filter((request) => request.path === path).map((request) => request.fields);
  }

  /** Waits for the path's next request. */
  next(path) {
    return once(this.#arrivals, path);
  }
}
