// core.js: the one object that the host talks to, and the way back.
//
// Host to page: Surface.call(name, argument) with plain data in and out; names are registered by the modules.
// Page to host: Surface.post(type, data) writes one console line that starts with a secret word the host chose. The
// host never answers from inside that call; it queues the event and comes back later.
"use strict";
var Surface = (() => {
  const calls = new Map();
  const modules = {};
  const secret = "@SECRET@";
  return {
    // Adds a concern. `make` gets the modules before it and gives what it offers to those after it.
    module(name, make) { modules[name] = make(modules); },
    // Makes a routine callable from the host.
    offer(name, routine) { calls.set(name, routine); },
    call(name, argument) {
      const routine = calls.get(name);
      return routine ? routine(argument) : undefined;
    },
    post(type, data) { console.debug(secret + JSON.stringify([type, data === undefined ? null : data])); },
  };
})();
