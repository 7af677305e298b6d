// Adds and shifts; after as many steps as a factor has bits, the sum is the product.
module multiplier(input clk, input [3:0] a, input [3:0] b);
  reg [3:0] step = 0;
  reg [3:0] left, factor, other;
  reg [7:0] addend, sum;
  always @(posedge clk) begin
    if (step == 0) begin
      factor <= a; other <= b; left <= a; addend <= b; sum <= 0; step <= 1;
    end else if (step <= 4) begin
      if (left[0]) sum <= sum + addend;
      addend <= addend << 1; left <= left >> 1; step <= step + 1;
    end else assert (sum == factor * other);
  end
endmodule
