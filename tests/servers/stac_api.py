"""A small API of STAC for tests: collections and items with paging, and a search by GET and POST.

Usage: stac_api.py FOLDER [--images ADDRESS] [--page N] [--posted] [--strict] [--endless] [--made N]
       [--searchonly] [--postonly]

Serves the collections of a static catalogue (samples/server writes one). Prints "ready PORT" when it may be asked.
/control/requests tells the first lines of all requests so far.
"""

import argparse
import json
import pathlib
import sys
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qsl, urlencode, urlsplit

CONFORMANCE = ["core", "collections", "item-search", "ogcapi-features"]


def read_collections(folder, images):
    """The collections of the folder by id, and their items by the same."""
    collections, items = {}, {}
    for path in sorted(folder.rglob("collection.json")):
        collection = json.loads(path.read_text())
        own = []
        for link in collection["links"]:
            if link["rel"] != "item":
                continue
            place = path.parent / link["href"]
            item = json.loads(place.read_text())
            for asset in item["assets"].values():
                whole = (place.parent / asset["href"]).absolute()
                asset["href"] = images + "/" + _below(whole, folder.absolute())
            own.append(item)
        collections[collection["id"]] = collection
        items[collection["id"]] = own
    return collections, items


def _below(path, folder):
    parts = []
    for part in path.parts:
        if part == "..":
            parts.pop()
        else:
            parts.append(part)
    return pathlib.Path(*parts).relative_to(folder).as_posix()


def made_items(like, count):
    """Copies of an item, side by side in rows of a hundred."""
    a, _, x, _, e, y = like["properties"]["proj:transform"]
    rows, columns = like["properties"]["proj:shape"]
    west, south, east, north = like["bbox"]
    for number in range(count):
        row, column = divmod(number, 100)
        item = like | {"id": f"made-{number:05}", "properties": dict(like["properties"])}
        right, up = (east - west) * column / 100, (north - south) * row / 100
        item["bbox"] = [west + right, south + up, east + right, north + up]
        item["properties"]["proj:transform"] = [a, 0, x + a * columns * column, 0, e, y - e * rows * row]
        item["properties"]["datetime"] = f"2021-{1 + number % 12:02}-{1 + number % 28:02}T00:00:00Z"
        item["properties"]["eo:cloud_cover"] = number % 100
        yield item


def meets(item, box):
    west, south, east, north = item["bbox"]
    return west <= box[2] and east >= box[0] and south <= box[3] and north >= box[1]


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *_):
        pass

    def do_GET(self):
        parts = urlsplit(self.path)
        if parts.path == "/control/requests":
            return self.answer("\n".join(self.server.requests))
        self.server.note(f"GET {self.path}")
        return self.route([part for part in parts.path.split("/") if part], dict(parse_qsl(parts.query)))

    def do_POST(self):
        body = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
        self.server.note(f"POST {self.path} {json.dumps(body)}")
        if urlsplit(self.path).path != "/search":
            return self.refuse(404)
        question = {name: value for name, value in body.items() if not isinstance(value, list)}
        for name in ("collections", "bbox"):
            if name in body:
                question[name] = ",".join(str(part) for part in body[name])
        return self.search(question)

    def route(self, steps, query):
        match steps:
            case []:
                return self.answer(self.landing())
            case ["collections"]:
                return self.answer({"collections": [self.collection(id) for id in self.server.collections],
                                    "links": []})
            case ["collections", id] if id in self.server.collections:
                return self.answer(self.collection(id))
            case ["collections", id, "items"] if id in self.server.collections:
                return self.page(self.server.items[id], f"/collections/{id}/items", query)
            case ["search"] if self.server.options.postonly:
                return self.refuse(405)
            case ["search"]:
                return self.search(query)
        return self.refuse(404)

    def search(self, query):
        ids = query.get("collections", ",".join(self.server.collections)).split(",")
        items = [item for id in ids for item in self.server.items.get(id, [])]
        return self.page(items, "/search", query)

    def landing(self):
        links = [{"rel": "self", "href": self.at("/")}, {"rel": "data", "href": self.at("/collections")},
                 {"rel": "search", "href": self.at("/search"), "type": "application/geo+json"}]
        links += [{"rel": "child", "href": self.at(f"/collections/{id}")} for id in self.server.collections]
        return {"type": "Catalog", "stac_version": "1.0.0", "id": "api", "description": "An API for tests",
                "conformsTo": [f"https://api.stacspec.org/v1.0.0/{name}" for name in CONFORMANCE], "links": links}

    def collection(self, id):
        links = [{"rel": "root", "href": self.at("/")}, {"rel": "self", "href": self.at(f"/collections/{id}")},
                 {"rel": "items", "href": self.at(f"/collections/{id}/items"), "type": "application/geo+json"}]
        if self.server.options.searchonly or self.server.options.postonly:
            del links[2]
        return self.server.collections[id] | {"links": links}

    def page(self, items, path, query):
        options = self.server.options
        limit = int(query.get("limit", options.page))
        if options.strict and limit > options.page:
            return self.refuse(400)
        if "bbox" in query:
            box = [float(edge) for edge in query["bbox"].split(",")]
            items = [item for item in items if meets(item, box)]
        begin = int(query.get("token", 0))
        if options.endless:
            again = [self.next_link(path, query | {"token": str(begin + 1)})]
            return self.answer({"type": "FeatureCollection", "features": [], "links": again})
        end = begin + min(limit, options.page)
        links = [{"rel": "self", "href": self.at(path)}]
        if end < len(items):
            links.append(self.next_link(path, query | {"token": str(end)}))
        features = [item | {"links": self.item_links(item)} for item in items[begin:end]]
        return self.answer({"type": "FeatureCollection", "features": features, "links": links,
                            "numberMatched": len(items)}, "application/geo+json")

    def item_links(self, item):
        return [{"rel": "collection", "href": self.at(f"/collections/{item['collection']}")}]

    def next_link(self, path, query):
        if not self.server.options.posted:
            return {"rel": "next", "href": self.at(f"{path}?{urlencode(query)}")}
        body = {"token": query["token"]}
        for name in ("collections", "bbox"):
            if name in query and self.command == "GET":
                body[name] = query[name].split(",")
        return {"rel": "next", "href": self.at("/search"), "method": "POST", "merge": True, "body": body}

    def at(self, path):
        return f"http://{self.headers['Host']}{path}"

    def refuse(self, status):
        return self.answer({"code": "refused", "description": "not this"}, status=status)

    def answer(self, content, kind="application/json", status=200):
        text = content if isinstance(content, str) else json.dumps(content)
        body = text.encode()
        self.send_response(status)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)


class Server(ThreadingHTTPServer):
    daemon_threads = True

    def __init__(self, options):
        super().__init__(("127.0.0.1", 0), Handler)
        self.options = options
        self.lock = threading.Lock()
        self.requests = []
        self.collections, self.items = read_collections(options.folder, options.images)
        if options.made:
            id, own = next(iter(self.items.items()))
            self.items[id] = list(made_items(own[0], options.made))

    def note(self, request):
        with self.lock:
            self.requests.append(request)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--images", default="", help="where the images of the catalogue are")
    parser.add_argument("--page", type=int, default=5, help="items of a page at most")
    parser.add_argument("--searchonly", action="store_true", help="collections do not tell where their items are")
    parser.add_argument("--postonly", action="store_true", help="the same, and searches are taken by POST alone")
    parser.add_argument("--posted", action="store_true", help="further pages are asked for by POST")
    parser.add_argument("--strict", action="store_true", help="a wish for longer pages is refused")
    parser.add_argument("--made", type=int, default=0, help="so many items of the first collection are made up")
    parser.add_argument("--endless", action="store_true", help="pages without items, each with a next one")
    server = Server(parser.parse_args())
    print(f"ready {server.server_port}", flush=True)
    server.serve_forever()


if __name__ == "__main__":
    sys.exit(main())
